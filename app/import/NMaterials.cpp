#include "app/import/NMaterials.h"

#include <assimp/material.h>

#include <array>
#include <optional>
#include <set>
#include <utility>

#include "app/import/mesh.h"
#include "app/scene/NTextureUse.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/domain/texture/NTextureNode.h"

namespace corvanta::app {

namespace {

namespace domain = data::domain;
namespace texture_mapping = data::domain::material::texture_mapping;

constexpr std::array<std::pair<aiTextureType, NTextureUse>, 17> kUses{{
    {aiTextureType_DIFFUSE, NTU_COLOR},
    {aiTextureType_BASE_COLOR, NTU_COLOR},
    {aiTextureType_SPECULAR, NTU_SPECULAR},
    {aiTextureType_AMBIENT, NTU_AMBIENT},
    {aiTextureType_EMISSIVE, NTU_EMISSIVE},
    {aiTextureType_EMISSION_COLOR, NTU_EMISSIVE},
    {aiTextureType_HEIGHT, NTU_HEIGHT},
    {aiTextureType_DISPLACEMENT, NTU_HEIGHT},
    {aiTextureType_NORMALS, NTU_NORMAL},
    {aiTextureType_NORMAL_CAMERA, NTU_NORMAL},
    {aiTextureType_OPACITY, NTU_OPACITY},
    {aiTextureType_LIGHTMAP, NTU_LIGHTMAP},
    {aiTextureType_AMBIENT_OCCLUSION, NTU_LIGHTMAP},
    {aiTextureType_METALNESS, NTU_METALNESS},
    {aiTextureType_DIFFUSE_ROUGHNESS, NTU_ROUGHNESS},
    {aiTextureType_SHININESS, NTU_OTHER},
    {aiTextureType_UNKNOWN, NTU_OTHER},
}};

std::optional<aiColor3D> GetColor(aiMaterial const& source, char const* key, unsigned type,
                                  unsigned index) {
  aiColor4D color;
  if (aiGetMaterialColor(&source, key, type, index, &color) != AI_SUCCESS) return std::nullopt;
  return aiColor3D(color.r, color.g, color.b);
}

void SetColors(aiMaterial const& source, domain::material::NMaterialNode& node) {
  auto diffuse = GetColor(source, AI_MATKEY_COLOR_DIFFUSE);
  if (!diffuse) diffuse = GetColor(source, AI_MATKEY_BASE_COLOR);
  if (diffuse) {
    node.SetDiffuseR(diffuse->r);
    node.SetDiffuseG(diffuse->g);
    node.SetDiffuseB(diffuse->b);
  }
  // Where a format has no colour of its own for it, what is lit from all sides keeps its colour.
  auto ambient = GetColor(source, AI_MATKEY_COLOR_AMBIENT);
  if (!ambient) ambient = diffuse;
  if (ambient) {
    node.SetAmbientR(ambient->r);
    node.SetAmbientG(ambient->g);
    node.SetAmbientB(ambient->b);
  }
  if (auto const specular = GetColor(source, AI_MATKEY_COLOR_SPECULAR)) {
    node.SetSpecularR(specular->r);
    node.SetSpecularG(specular->g);
    node.SetSpecularB(specular->b);
  }
  if (auto const emissive = GetColor(source, AI_MATKEY_COLOR_EMISSIVE)) {
    node.SetEmissiveR(emissive->r);
    node.SetEmissiveG(emissive->g);
    node.SetEmissiveB(emissive->b);
  }
}

}  // namespace

NMaterials::NMaterials(NDocument& document, aiScene const& scene, NPictures& pictures)
    : m_document(document), m_scene(scene), m_pictures(pictures), m_nodes(scene.mNumMaterials) {}

boost::intrusive_ptr<domain::material::NMaterialNode> NMaterials::GetMaterial(unsigned index) {
  auto& node = m_nodes[index];
  if (node) return node;
  aiMaterial const& source = *m_scene.mMaterials[index];
  node = m_document.GetMaterials().CreateNode(core::node::NNodeID());
  aiString name;
  if (source.Get(AI_MATKEY_NAME, name) == AI_SUCCESS && name.length != 0) {
    node->SetName(core::text::ToWide(name.C_Str()));
  }
  SetColors(source, *node);
  float value = 0.0f;
  // A material without a highlight has a shininess of 0, which is no exponent.
  if (source.Get(AI_MATKEY_SHININESS, value) == AI_SUCCESS && value > 0.0f) node->SetPower(value);
  // The attribute is 1 for what lets nothing through.
  if (source.Get(AI_MATKEY_OPACITY, value) == AI_SUCCESS) node->SetTransparency(value);
  AddTextures(source, *node);
  return node;
}

// A picture may serve several uses of one material; it is one texture, of the first of them.
void NMaterials::AddTextures(aiMaterial const& source, domain::material::NMaterialNode& node) {
  float bumpScale = 1.0f;
  source.Get(AI_MATKEY_BUMPSCALING, bumpScale);
  std::set<std::pair<domain::image::NImageNode const*, unsigned>> taken;
  for (auto const& [type, use] : kUses) {
    for (unsigned i = 0; i != source.GetTextureCount(type); ++i) {
      aiString file;
      unsigned channel = 0;
      if (source.GetTexture(type, i, &file, nullptr, &channel) != AI_SUCCESS) continue;
      auto const image = m_pictures.GetImage(file);
      if (!taken.emplace(image.get(), channel).second) continue;

      auto const texture = m_document.GetTextures().CreateNode(core::node::NNodeID());
      texture->SetName(image->GetName());
      texture->SetType(static_cast<domain::texture::NTextureType>(use));
      if (use == NTU_HEIGHT) texture->SetBumpScale(bumpScale);
      texture->SetImage(core::node::NNodeReference<domain::image::NImageNode>(*image));
      boost::intrusive_ptr<texture_mapping::NUVWMapping> const mapping(
          new texture_mapping::NUVWMapping(
              static_cast<texture_mapping::NUVWMappingType>(GetMappingId(channel))));
      node.AddTexture(core::node::NNodeReference<domain::texture::NTextureNode>(*texture), *mapping,
                      static_cast<unsigned>(node.GetTextures().size()));
    }
  }
}

}  // namespace corvanta::app
