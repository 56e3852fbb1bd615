#include "corvanta/importer/NMaterials.h"

#include <set>
#include <utility>

#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/domain/texture/NTextureNode.h"
#include "corvanta/data/domain/texture/NTextureUse.h"
#include "corvanta/importer/mesh.h"
#include "corvanta/importer/placement.h"

namespace corvanta::importer {

namespace {

namespace domain = data::domain;
namespace texture_mapping = data::domain::material::texture_mapping;
using enum data::domain::texture::NTextureUse;

void SetColors(neutral::NMaterial const& source, domain::material::NMaterialNode& node) {
  auto const& diffuse = source.diffuse;
  if (diffuse.isSet != 0) {
    node.SetDiffuseR(diffuse.value[0]);
    node.SetDiffuseG(diffuse.value[1]);
    node.SetDiffuseB(diffuse.value[2]);
  }
  // Where a format has no colour of its own for it, what is lit from all sides keeps its colour.
  auto const& ambient = source.ambient.isSet != 0 ? source.ambient : diffuse;
  if (ambient.isSet != 0) {
    node.SetAmbientR(ambient.value[0]);
    node.SetAmbientG(ambient.value[1]);
    node.SetAmbientB(ambient.value[2]);
  }
  if (auto const& specular = source.specular; specular.isSet != 0) {
    node.SetSpecularR(specular.value[0]);
    node.SetSpecularG(specular.value[1]);
    node.SetSpecularB(specular.value[2]);
  }
  if (auto const& emissive = source.emissive; emissive.isSet != 0) {
    node.SetEmissiveR(emissive.value[0]);
    node.SetEmissiveG(emissive.value[1]);
    node.SetEmissiveB(emissive.value[2]);
  }
}

}  // namespace

NMaterials::NMaterials(NImportTarget& target, neutral::NSceneView const& scene, NPictures& pictures)
    : m_target(target),
      m_scene(scene),
      m_pictures(pictures),
      m_nodes(scene.Get<neutral::NMaterial>().size()) {}

boost::intrusive_ptr<domain::material::NMaterialNode> NMaterials::GetMaterial(std::size_t index) {
  auto& node = m_nodes[index];
  if (node) return node;
  auto const& source = m_scene.Get<neutral::NMaterial>()[index];
  node = m_target.Create(m_target.GetDocument().GetMaterials());
  SetName(*node, m_scene.GetText(source.name));
  SetColors(source, *node);
  // A material without a highlight has a shininess of 0, which is no exponent.
  if (source.shininess.isSet != 0 && source.shininess.value > 0.0f) {
    node->SetPower(source.shininess.value);
  }
  // The attribute is 1 for what lets nothing through.
  if (source.opacity.isSet != 0) node->SetTransparency(source.opacity.value);
  AddTextures(source, *node);
  return node;
}

// A picture may serve several uses of one material; it is one texture, of the first of them.
void NMaterials::AddTextures(neutral::NMaterial const& source,
                             domain::material::NMaterialNode& node) {
  std::set<std::pair<domain::image::NImageNode const*, unsigned>> taken;
  for (neutral::NTexture const& entry : m_scene.Get(source.textures)) {
    auto const image = m_pictures.GetImage(entry.picture);
    if (!taken.emplace(image.get(), entry.uvSet).second) continue;

    auto const texture = m_target.Create(m_target.GetDocument().GetTextures());
    texture->SetName(image->GetName());
    texture->SetType(static_cast<domain::texture::NTextureType>(entry.use));
    if (entry.use == NTU_HEIGHT) {
      texture->SetBumpScale(source.bumpScale.isSet != 0 ? source.bumpScale.value : 1.0f);
    }
    texture->SetImage(core::node::NNodeReference<domain::image::NImageNode>(*image));
    boost::intrusive_ptr<texture_mapping::NUVWMapping> const mapping(
        new texture_mapping::NUVWMapping(
            static_cast<texture_mapping::NUVWMappingType>(GetMappingId(entry.uvSet))));
    node.AddTexture(core::node::NNodeReference<domain::texture::NTextureNode>(*texture), *mapping,
                    static_cast<unsigned>(node.GetTextures().size()));
  }
}

}  // namespace corvanta::importer
