#include "corvanta/importer/NMaterials.h"

#include <set>
#include <tuple>

#include "corvanta/core/text/message.h"
#include "corvanta/data/domain/material/NMaterialOptions.h"
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
using Nodes = std::vector<boost::intrusive_ptr<domain::material::NMaterialNode>>;

void SetColors(neutral::NMaterial const& source, domain::material::NMaterialNode& node) {
  // Nobody means black by saying nothing.
  neutral::NTriple const white{1.0f, 1.0f, 1.0f};
  auto const& diffuse = source.diffuse.isSet != 0 ? source.diffuse.value : white;
  node.SetDiffuseR(diffuse[0]);
  node.SetDiffuseG(diffuse[1]);
  node.SetDiffuseB(diffuse[2]);
  // Where a format has no colour of its own for it, what is lit from all sides keeps its colour.
  auto const& ambient = source.ambient.isSet != 0 ? source.ambient.value : diffuse;
  node.SetAmbientR(ambient[0]);
  node.SetAmbientG(ambient[1]);
  node.SetAmbientB(ambient[2]);
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

void SetSurface(neutral::NMaterial const& source, domain::material::NMaterialNode& node) {
  // A material without a highlight has a shininess of 0, which is no exponent.
  if (source.shininess.isSet != 0 && source.shininess.value > 0.0f) {
    node.SetPower(source.shininess.value);
  }
  if (source.roughness.isSet != 0) {
    node.SetRoughness(source.roughness.value);
    node.SetIblRoughness(source.roughness.value);
  }
  if (source.refractiveIndex.isSet != 0) node.SetRefractiveIndex(source.refractiveIndex.value);
  if (source.clearcoatIndex.isSet != 0) node.SetClearcoatIndex(source.clearcoatIndex.value);
  if (source.reflection.isSet != 0) {
    node.SetEnvironmentMapIsEnabledFlag(true);
    node.SetIblSpecularCoeff(source.reflection.value);
  }
}

}  // namespace

NMaterials::NMaterials(NImportTarget& target, neutral::NSceneView const& scene, NPictures& pictures)
    : m_target(target),
      m_scene(scene),
      m_pictures(pictures),
      m_nodes{Nodes(scene.Get<neutral::NMaterial>().size()),
              Nodes(scene.Get<neutral::NMaterial>().size())} {}

boost::intrusive_ptr<domain::material::NMaterialNode> NMaterials::GetMaterial(std::size_t index,
                                                                              bool isColored) {
  auto& node = m_nodes[isColored ? 1 : 0][index];
  if (node) return node;
  auto const& source = m_scene.Get<neutral::NMaterial>()[index];
  node = m_target.Create(m_target.GetDocument().GetMaterials());
  SetName(*node, m_scene.GetText(source.name));
  SetColors(source, *node);
  SetSurface(source, *node);
  if (source.isOneSided != 0) {
    node->SetType(static_cast<domain::material::NMaterialType>(domain::material::NMO_ONE_SIDED));
  }
  // The attribute is 1 for what lets nothing through. Nobody models what is never seen: formats and
  // exporters disagree on which end means opaque.
  if (source.opacity.isSet != 0) {
    bool const isVisible = source.opacity.value > 0.0f;
    node->SetTransparency(isVisible ? source.opacity.value : 1.0);
    m_invisibleCount += !isVisible;
  }
  AddTextures(source, *node, isColored);
  return node;
}

std::vector<std::string> NMaterials::GetNotes() const {
  if (m_invisibleCount == 0) return {};
  return {core::text::Plural(m_invisibleCount,
                             "material is transparent as a whole, and is shown opaque",
                             "materials are transparent as a whole, and are shown opaque")};
}

// Readers may name a picture twice for one use.
void NMaterials::AddTextures(neutral::NMaterial const& source,
                             domain::material::NMaterialNode& node, bool isColored) {
  std::set<std::tuple<domain::image::NImageNode const*, unsigned, unsigned>> taken;
  for (neutral::NTexture const& entry : m_scene.Get(source.textures)) {
    bool const isOfVertices = entry.picture == neutral::kNone;
    if (isOfVertices && !isColored) continue;
    auto const image = m_pictures.GetImage(entry.picture);
    if (!taken.emplace(image.get(), entry.uvSet, entry.use).second) continue;

    auto const texture = m_target.Create(m_target.GetDocument().GetTextures());
    texture->SetName(image->GetName());
    texture->SetType(static_cast<domain::texture::NTextureType>(entry.use));
    texture->SetBumpScale(entry.scale);
    texture->SetOperationType(static_cast<domain::texture::NTextureOperationType>(entry.operation));
    texture->SetImage(core::node::NNodeReference<domain::image::NImageNode>(*image));
    boost::intrusive_ptr<texture_mapping::NUVWMapping> const mapping(
        new texture_mapping::NUVWMapping(static_cast<texture_mapping::NUVWMappingType>(
            isOfVertices ? kColorsMappingId : GetMappingId(entry.uvSet))));
    node.AddTexture(core::node::NNodeReference<domain::texture::NTextureNode>(*texture), *mapping,
                    static_cast<unsigned>(node.GetTextures().size()));
  }
}

}  // namespace corvanta::importer
