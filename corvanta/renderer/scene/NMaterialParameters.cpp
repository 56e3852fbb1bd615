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
using domain::material::kCombinationMask;
using domain::material::kMostCutOff;
using domain::material::NColorOperation;
using enum domain::texture::NTextureUse;
using enum domain::material::NColorOperation;
using domain::material::NMO_ONE_SIDED;

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
    case NTU_METALNESS:
      return NTS_METALNESS;
    case NTU_ROUGHNESS:
      return NTS_ROUGHNESS;
    case NTU_LIGHTMAP:
      return NTS_OCCLUSION;
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

NColorOperation GetColorOperation(long operation) {
  long const type = operation & kCombinationMask;
  return type >= NCO_MULTIPLY && type <= NCO_IGNORE_ALPHA ? static_cast<NColorOperation>(type)
                                                          : NCO_MULTIPLY;
}

/// Whether a picture gives the material a colour.
bool IsColor(domain::material::NMaterialNode const& material,
             domain::image::NImageNode const& image) {
  auto const& textures = material.GetTextures();
  return std::any_of(textures.begin(), textures.end(), [&image](auto const& entry) {
    auto const texture = entry.first.Get();
    NTextureSlot const slot = texture ? GetTextureSlot(texture->GetType()) : NTS_COUNT;
    bool const isColor = slot == NTS_COLOR || slot == NTS_SPECULAR || slot == NTS_EMISSIVE;
    return isColor && texture->GetImage().get() == &image;
  });
}

using Mapping = domain::material::texture_mapping::NTextureMapping;

bool AreAlike(Mapping const& a, Mapping const& b) {
  using domain::material::texture_mapping::NUVWMapping;
  auto const* const first = dynamic_cast<NUVWMapping const*>(&a);
  auto const* const second = dynamic_cast<NUVWMapping const*>(&b);
  if (first == nullptr || second == nullptr) return &a == &b;
  return first->GetUVWMappingType() == second->GetUVWMappingType();
}

/// Finds coordinates for the textures that have none of their own; one for which none are left is
/// dropped.
void AssignCoords(NMaterialParameters& parameters,
                  std::array<boost::intrusive_ptr<Mapping const>, NTS_COUNT> const& used) {
  for (NTextureSlot const slot : kCoordsSlots) {
    parameters.coordsSlots[slot] = slot;
    parameters.mappings[slot] = used[slot];
  }
  // Those of bumps bring tangents with them.
  constexpr NTextureSlot kFree[] = {NTS_OPACITY, NTS_EMISSIVE, NTS_SPECULAR, NTS_COLOR, NTS_BUMP};
  for (unsigned i = kCoordsCount; i != NTS_COUNT; ++i) {
    if (!used[i]) continue;
    auto const find = [&](auto const& fits) {
      auto const found = std::find_if(std::begin(kFree), std::end(kFree), fits);
      if (found == std::end(kFree)) return false;
      parameters.coordsSlots[i] = *found;
      parameters.mappings[*found] = used[i];
      return true;
    };
    auto const& mappings = parameters.mappings;
    if (find([&](auto slot) { return mappings[slot] && AreAlike(*mappings[slot], *used[i]); })) {
      continue;
    }
    if (!find([&](auto slot) { return !mappings[slot]; })) parameters.textures[i] = 0;
  }
}

/// The slot that the texture takes; NTS_COUNT where it takes none.
NTextureSlot AddTexture(NMaterialParameters& parameters,
                        domain::material::NMaterialNode const& material,
                        domain::texture::NTextureNode const& texture, Mapping const& mapping,
                        NTextures& textures) {
  NTextureSlot const slot = GetTextureSlot(texture.GetType());
  auto const image = texture.GetImage();
  if (slot == NTS_COUNT || !image || parameters.HasTexture(slot)) return NTS_COUNT;
  // The opacity of a picture that gives a colour, too, is its alpha.
  bool const isAlpha = slot == NTS_OPACITY && IsColor(material, *image);
  bool const isColor = slot == NTS_COLOR || slot == NTS_SPECULAR || slot == NTS_EMISSIVE;
  bool const isData = !isColor && !isAlpha;
  NTexture const& loaded = textures.Get(*image, isData ? NTC_DATA : NTC_COLOR);
  parameters.textures[slot] = loaded.texture.Get();
  parameters.samplers[slot] = textures.GetSampler(texture.GetOperationType());
  parameters.hasFloatTexture |= isColor && loaded.isLinear;
  parameters.bounds |= GetBounds(mapping) << 2 * slot;
  if (slot == NTS_COLOR) {
    parameters.colorOperation = GetColorOperation(texture.GetOperationType());
    parameters.isTransparent |= loaded.hasAlpha && parameters.colorOperation != NCO_IGNORE_ALPHA;
  } else if (slot == NTS_BUMP) {
    parameters.bumpContent =
        texture.GetType() == static_cast<long>(NTU_HEIGHT) ? NBC_HEIGHTS : NBC_NORMALS;
    parameters.bumpScale = Finite(texture.GetBumpScale());
  } else if (slot >= NTS_METALNESS) {
    parameters.dataScales[slot - NTS_METALNESS] = Finite(texture.GetBumpScale());
  } else if (slot == NTS_OPACITY) {
    parameters.opacityInAlpha = isAlpha || loaded.hasAlpha;
    parameters.isTransparent |= !isAlpha || loaded.hasAlpha;
    long const cutOff = texture.GetOperationType() & kCombinationMask;
    parameters.cutOff = static_cast<float>(cutOff) / static_cast<float>(kMostCutOff);
  }
  return slot;
}

/// What a smooth surface reflects, seen along its normal, from a medium of another index.
float GetNormalReflectance(double index, double outside) {
  double const root = (index - outside) / (index + outside);
  return std::clamp(Finite(root * root), 0.0f, 1.0f);
}

// The defaults of these leave a material as it is without them.
constexpr double kEccentricity = 0.3, kRollOff = 0.7, kCoatIndex = 1.8;

/// The exponent of the highlight. The width of a lobe is as 1 / the root of its exponent: B. Walter
/// et al., Microfacet models for refraction through rough surfaces, 2007.
float GetExponent(domain::material::NMaterialNode const& material) {
  double const narrower = kEccentricity / std::max(material.GetEccentricity(), 1e-3);
  return std::clamp(Finite(material.GetPower() * narrower * narrower), 1e-3f, 1e6f);
}

void ReadFinish(NMaterialParameters& parameters, domain::material::NMaterialNode const& material) {
  parameters.isOneSided = (static_cast<long>(material.GetType()) & NMO_ONE_SIDED) != 0;
  parameters.roughness = std::clamp(Finite(material.GetRoughness()), 0.0f, 1.0f);
  double const coat = material.GetClearcoatIndex();
  if (coat > 1 && coat != kCoatIndex) parameters.coatReflectance = GetNormalReflectance(coat, 1);
  parameters.fleckColor = Color(material.GetFleckSpecularR(), material.GetFleckSpecularG(),
                                material.GetFleckSpecularB());
  parameters.fleckSize = std::max(Finite(material.GetFleckSize()), 0.0f);
  parameters.fleckPerturbation = Finite(material.GetFleckPerturbation());
}

void ReadReflection(NMaterialParameters& parameters,
                    domain::material::NMaterialNode const& material, NTextures& textures) {
  if (!material.EnvironmentMapIsEnabled()) return;
  parameters.reflection = std::max(Finite(material.GetIblSpecularCoeff()), 0.0f);
  parameters.fresnel = {
      GetNormalReflectance(material.GetRefractiveIndex(), material.GetBackRefractiveIndex()),
      std::clamp(Finite(material.GetSpecularRollOff() / kRollOff), 0.0f, 1.0f),
      Finite(material.GetScale()), Finite(material.GetBias())};
  parameters.reflectionLod = 8.0f * std::clamp(Finite(material.GetIblRoughness()), 0.0f, 1.0f);
  parameters.irradiance = std::max(Finite(material.GetIblDiffuseCoeff()), 0.0f);
  parameters.environmentContrast = std::max(Finite(material.GetIblContrast()), 0.0f);
  parameters.environment = ReadEnvironmentTexture(material.GetEnvironmentMap(), textures);
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
  NTexture const& loaded = textures.Get(*image, isCube ? NTC_CUBE : NTC_COLOR);
  environment.texture = loaded.texture.Get();
  environment.isLinear = loaded.isLinear;
  environment.harmonics = &textures.GetHarmonics(loaded, environment.projection);
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
  parameters.power = GetExponent(material);
  parameters.opacity = std::clamp(Finite(material.GetTransparency()), 0.0f, 1.0f);
  parameters.isTransparent = parameters.opacity < 1.0f;
  std::array<boost::intrusive_ptr<Mapping const>, NTS_COUNT> used;
  for (auto const& [reference, mapping] : material.GetTextures()) {
    auto const texture = reference.Get();
    if (!texture || !mapping) continue;
    NTextureSlot const slot = AddTexture(parameters, material, *texture, *mapping, textures);
    if (slot != NTS_COUNT) used[slot] = mapping;
  }
  AssignCoords(parameters, used);
  // What is cut off leaves the rest opaque.
  if (parameters.cutOff > 0.0f) parameters.isTransparent = false;
  ReadFinish(parameters, material);
  ReadReflection(parameters, material, textures);
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
  parameters.fresnel[0] = 0.2f;
  parameters.reflectionLod = 6.0f * std::clamp(Finite(environment.GetFloorRoughness()), 0.0f, 1.0f);
  if (auto const image = environment.GetFloorImage()) {
    NTexture const& loaded = textures.Get(*image, NTC_COLOR);
    parameters.textures[NTS_COLOR] = loaded.texture.Get();
    parameters.isTransparent = loaded.hasAlpha;
    parameters.hasFloatTexture = loaded.isLinear;
    namespace texture_mapping = domain::material::texture_mapping;
    static boost::intrusive_ptr<texture_mapping::NTextureMapping const> const primitive(
        new texture_mapping::NUVWMapping(texture_mapping::NUVWMT_INTERNAL));
    parameters.mappings[NTS_COLOR] = primitive;
  }
  return parameters;
}

}  // namespace corvanta::renderer
