#include "corvanta/renderer/scene/NMaterialParameters.h"

#include <algorithm>
#include <cmath>

#include "corvanta/data/domain/material/texture_mapping/NProjectionMapping.h"
#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/domain/projection/NProjectionNode.h"
#include "corvanta/data/domain/texture/NTextureUse.h"

namespace corvanta::renderer {

namespace {

namespace domain = data::domain;
using enum domain::texture::NTextureUse;

float Finite(double value) {
  auto const narrow = static_cast<float>(value);
  return std::isfinite(narrow) ? narrow : 0.0f;
}

NColor Color(double r, double g, double b) { return {Finite(r), Finite(g), Finite(b)}; }

/// The slot of a use; NTS_COUNT for a use that is ignored.
NTextureSlot GetTextureSlot(long use) {
  switch (use) {
    case NTU_COLOR:
      return NTS_COLOR;
    case NTU_SPECULAR:
      return NTS_SPECULAR;
    case NTU_EMISSIVE:
      return NTS_EMISSIVE;
    case NTU_HEIGHT:
    case NTU_NORMAL:
      return NTS_BUMP;
    case NTU_OPACITY:
      return NTS_OPACITY;
    default:
      return NTS_COUNT;
  }
}

/// Whether a projected texture ends at the borders of u and v, as two bits.
int GetBounds(domain::material::texture_mapping::NTextureMapping const& mapping) {
  auto const* const projected =
      dynamic_cast<domain::material::texture_mapping::NProjectionMapping const*>(&mapping);
  if (projected == nullptr || projected->GetModelToProjectionMap().empty()) return 0;
  auto const node = projected->GetModelToProjectionMap().begin()->second.Get();
  return node ? (node->WrapU() ? 0 : 1) | (node->WrapV() ? 0 : 2) : 0;
}

NColorOperation GetColorOperation(long type) {
  return type == NCO_ADD || type == NCO_COVER ? static_cast<NColorOperation>(type) : NCO_MULTIPLY;
}

void AddTexture(NMaterialParameters& parameters, domain::texture::NTextureNode const& texture,
                domain::material::texture_mapping::NTextureMapping const& mapping,
                NTextures& textures) {
  NTextureSlot const slot = GetTextureSlot(texture.GetType());
  auto const image = texture.GetImage();
  if (slot == NTS_COUNT || !image || parameters.HasTexture(slot)) return;
  bool const isData = slot == NTS_BUMP || slot == NTS_OPACITY;
  NTexture const& loaded = textures.Get(*image, isData ? NTC_DATA : NTC_COLOR);
  parameters.textures[slot] = loaded.texture.Get();
  parameters.mappings[slot] = &mapping;
  parameters.bounds |= GetBounds(mapping) << 2 * slot;
  if (slot == NTS_COLOR) {
    parameters.colorOperation = GetColorOperation(texture.GetOperationType());
    parameters.isTransparent |= loaded.hasAlpha;
  } else if (slot == NTS_BUMP) {
    parameters.bumpContent =
        texture.GetType() == static_cast<long>(NTU_HEIGHT) ? NBC_HEIGHTS : NBC_NORMALS;
    parameters.bumpScale = Finite(texture.GetBumpScale());
  } else if (slot == NTS_OPACITY) {
    parameters.opacityInAlpha = loaded.hasAlpha;
    parameters.isTransparent = true;
  }
}

/// What a smooth surface reflects, seen along its normal.
float GetNormalReflectance(double index) {
  double const root = (index - 1) / (index + 1);
  return std::clamp(Finite(root * root), 0.0f, 1.0f);
}

}  // namespace

NEnvironmentTexture ReadEnvironmentTexture(data::environment_map::NEnvironmentMap const& map,
                                           NTextures& textures) {
  NEnvironmentTexture environment;
  auto const image = map.GetImage();
  if (!image) return environment;
  environment.projection = static_cast<NEnvironmentProjection>(
      std::clamp<long>(map.GetImageType(), NEP_CUBE, NEP_SQUARE));
  bool const isCube = environment.projection == NEP_CUBE;
  environment.texture = textures.Get(*image, isCube ? NTC_CUBE : NTC_COLOR).texture.Get();
  // A rotation: its inverse is its transpose.
  if (auto const transform = map.GetTransform()) {
    environment.rotation = transform->GetTransform().Transpose();
  }
  return environment;
}

NMaterialParameters ReadMaterialParameters(domain::material::NMaterialNode const& material,
                                           NTextures& textures) {
  NMaterialParameters parameters;
  parameters.diffuse =
      Color(material.GetDiffuseR(), material.GetDiffuseG(), material.GetDiffuseB());
  parameters.ambient =
      Color(material.GetAmbientR(), material.GetAmbientG(), material.GetAmbientB());
  parameters.specular =
      Color(material.GetSpecularR(), material.GetSpecularG(), material.GetSpecularB());
  parameters.emissive =
      Color(material.GetEmissiveR(), material.GetEmissiveG(), material.GetEmissiveB());
  parameters.power = std::max(Finite(material.GetPower()), 1e-3f);
  parameters.opacity = std::clamp(Finite(material.GetTransparency()), 0.0f, 1.0f);
  parameters.isTransparent = parameters.opacity < 1.0f;
  for (auto const& [reference, mapping] : material.GetTextures()) {
    auto const texture = reference.Get();
    if (texture && mapping) AddTexture(parameters, *texture, *mapping, textures);
  }
  if (material.EnvironmentMapIsEnabled()) {
    parameters.reflection = std::max(Finite(material.GetIblSpecularCoeff()), 0.0f);
    parameters.normalReflectance = GetNormalReflectance(material.GetRefractiveIndex());
    parameters.reflectionLod = 8.0f * std::clamp(Finite(material.GetIblRoughness()), 0.0f, 1.0f);
    parameters.environment = ReadEnvironmentTexture(material.GetEnvironmentMap(), textures);
  }
  return parameters;
}

NMaterialParameters MakeDefaultMaterialParameters() {
  NMaterialParameters parameters;
  parameters.diffuse = parameters.ambient = {0.5f, 0.5f, 0.5f};
  return parameters;
}

NMaterialParameters ReadFloorMaterialParameters(
    domain::environment::NEnvironmentNode const& environment, NTextures& textures) {
  NMaterialParameters parameters;
  parameters.diffuse = Color(environment.GetFloorColorR(), environment.GetFloorColorG(),
                             environment.GetFloorColorB());
  parameters.ambient = parameters.diffuse;
  parameters.reflection = std::max(Finite(environment.GetFloorReflection()), 0.0f);
  parameters.normalReflectance = 0.2f;
  parameters.reflectionLod = 6.0f * std::clamp(Finite(environment.GetFloorRoughness()), 0.0f, 1.0f);
  if (auto const image = environment.GetFloorImage()) {
    NTexture const& loaded = textures.Get(*image, NTC_COLOR);
    parameters.textures[NTS_COLOR] = loaded.texture.Get();
    parameters.isTransparent = loaded.hasAlpha;
    namespace texture_mapping = domain::material::texture_mapping;
    static boost::intrusive_ptr<texture_mapping::NTextureMapping const> const primitive(
        new texture_mapping::NUVWMapping(texture_mapping::NUVWMT_INTERNAL));
    parameters.mappings[NTS_COLOR] = primitive;
  }
  return parameters;
}

}  // namespace corvanta::renderer
