#include "corvanta/renderer/NShade.h"

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

/// The slot of a use; NS_COUNT for a use that has no part in the picture.
NSlot GetSlot(long use) {
  switch (use) {
    case NTU_COLOR:
      return NS_COLOR;
    case NTU_SPECULAR:
      return NS_SPECULAR;
    case NTU_EMISSIVE:
      return NS_EMISSIVE;
    case NTU_HEIGHT:
    case NTU_NORMAL:
      return NS_BUMP;
    case NTU_OPACITY:
      return NS_OPACITY;
    default:
      return NS_COUNT;
  }
}

/// Whether a texture that is thrown ends at the borders of u and v, as two bits.
int GetBounds(domain::material::texture_mapping::NTextureMapping const& mapping) {
  auto const* const thrown =
      dynamic_cast<domain::material::texture_mapping::NProjectionMapping const*>(&mapping);
  if (thrown == nullptr || thrown->GetModelToProjectionMap().empty()) return 0;
  auto const node = thrown->GetModelToProjectionMap().begin()->second.Get();
  return node ? (node->WrapU() ? 0 : 1) | (node->WrapV() ? 0 : 2) : 0;
}

void AddTexture(NShade& shade, domain::texture::NTextureNode const& texture,
                domain::material::texture_mapping::NTextureMapping const& mapping,
                NTextures& textures) {
  NSlot const slot = GetSlot(texture.GetType());
  auto const image = texture.GetImage();
  if (slot == NS_COUNT || !image || (shade.slots & 1 << slot) != 0) return;
  bool const isData = slot == NS_BUMP || slot == NS_OPACITY;
  NTexture const& loaded = textures.Get(*image, isData ? NTC_DATA : NTC_COLOR);
  shade.slots |= 1 << slot;
  shade.textures[slot] = loaded.texture.Get();
  shade.mappings[slot] = &mapping;
  shade.bounds |= GetBounds(mapping) << 2 * slot;
  if (slot == NS_COLOR) {
    shade.colorOperation = static_cast<int>(texture.GetOperationType());
    shade.isTransparent |= loaded.hasAlpha;
  } else if (slot == NS_BUMP) {
    shade.bumpKind = texture.GetType() == static_cast<long>(NTU_HEIGHT) ? 1 : 2;
    shade.bumpScale = Finite(texture.GetBumpScale());
  } else if (slot == NS_OPACITY) {
    shade.opacityInAlpha = loaded.hasAlpha;
    shade.isTransparent = true;
  }
}

/// What a smooth surface mirrors when one looks straight at it.
float GetNormalReflectance(double index) {
  double const root = (index - 1) / (index + 1);
  return std::clamp(Finite(root * root), 0.0f, 1.0f);
}

}  // namespace

NSky ReadSky(data::environment_map::NEnvironmentMap const& map, NTextures& textures) {
  NSky sky;
  auto const image = map.GetImage();
  if (!image) return sky;
  sky.kind = std::clamp<int>(map.GetImageType(), 0, 2);
  sky.texture = textures.Get(*image, sky.kind == 0 ? NTC_CUBE : NTC_COLOR).texture.Get();
  // A rotation: its inverse is its transpose.
  if (auto const transform = map.GetTransform()) sky.turn = transform->GetTransform().Transpose();
  return sky;
}

NShade ReadShade(domain::material::NMaterialNode const& material, NTextures& textures) {
  NShade shade;
  shade.diffuse = Color(material.GetDiffuseR(), material.GetDiffuseG(), material.GetDiffuseB());
  shade.ambient = Color(material.GetAmbientR(), material.GetAmbientG(), material.GetAmbientB());
  shade.specular = Color(material.GetSpecularR(), material.GetSpecularG(), material.GetSpecularB());
  shade.emissive = Color(material.GetEmissiveR(), material.GetEmissiveG(), material.GetEmissiveB());
  shade.power = std::max(Finite(material.GetPower()), 1e-3f);
  shade.opacity = std::clamp(Finite(material.GetTransparency()), 0.0f, 1.0f);
  shade.isTransparent = shade.opacity < 1.0f;
  for (auto const& [reference, mapping] : material.GetTextures()) {
    auto const texture = reference.Get();
    if (texture && mapping) AddTexture(shade, *texture, *mapping, textures);
  }
  if (material.EnvironmentMapIsEnabled()) {
    shade.mirror = std::max(Finite(material.GetIblSpecularCoeff()), 0.0f);
    shade.mirrorFloor = GetNormalReflectance(material.GetRefractiveIndex());
    shade.mirrorBlur = 8.0f * std::clamp(Finite(material.GetIblRoughness()), 0.0f, 1.0f);
    shade.sky = ReadSky(material.GetEnvironmentMap(), textures);
  }
  return shade;
}

NShade MakePlainShade() {
  NShade shade;
  shade.diffuse = shade.ambient = {0.5f, 0.5f, 0.5f};
  return shade;
}

NShade ReadFloorShade(domain::environment::NEnvironmentNode const& environment,
                      NTextures& textures) {
  NShade shade;
  shade.diffuse = Color(environment.GetFloorColorR(), environment.GetFloorColorG(),
                        environment.GetFloorColorB());
  shade.ambient = shade.diffuse;
  shade.mirror = std::max(Finite(environment.GetFloorReflection()), 0.0f);
  shade.mirrorFloor = 0.2f;
  shade.mirrorBlur = 6.0f * std::clamp(Finite(environment.GetFloorRoughness()), 0.0f, 1.0f);
  if (auto const image = environment.GetFloorImage()) {
    NTexture const& loaded = textures.Get(*image, NTC_COLOR);
    shade.slots = 1 << NS_COLOR;
    shade.textures[NS_COLOR] = loaded.texture.Get();
    shade.isTransparent = loaded.hasAlpha;
    namespace texture_mapping = domain::material::texture_mapping;
    static boost::intrusive_ptr<texture_mapping::NTextureMapping const> const primitive(
        new texture_mapping::NUVWMapping(texture_mapping::NUVWMT_INTERNAL));
    shade.mappings[NS_COLOR] = primitive;
  }
  return shade;
}

}  // namespace corvanta::renderer
