#include "corvanta/renderer/pass/brightness.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "corvanta/data/domain/material/NMaterialOptions.h"

namespace corvanta::renderer {

namespace {

using data::domain::environment::NEnvironmentNode;
using data::domain::material::NCO_ADD;
using data::domain::material::NCO_COVER;

constexpr float kUnbounded = std::numeric_limits<float>::infinity();
// What sums in another order may add.
constexpr float kRounding = 1e-3f;

/// The longest sum of some of `count` vectors. The light on a surface is that of the lamps before
/// it, which is its normal times the sum of these.
float GetLongestSum(std::array<VX_Math::Vec3, kLampCount> const& vectors, unsigned count) {
  VX_Math::Vec3 sum;
  float longest = 0.0f;
  // Each set differs from the one before by one vector.
  for (unsigned step = 1; step < 1u << count; ++step) {
    auto const changed = static_cast<std::size_t>(std::countr_zero(step));
    unsigned const set = step ^ step >> 1;
    sum = (set >> changed & 1u) != 0 ? sum + vectors[changed] : sum - vectors[changed];
    longest = std::max(longest, sum.Dot(sum));
  }
  return std::sqrt(longest);
}

float GetLampSum(NLamps const& lamps, std::size_t channel) {
  float sum = 0.0f;
  for (std::size_t i = 0; i != static_cast<std::size_t>(lamps.count); ++i) {
    sum += std::max(lamps.colors[3 * i + channel], 0.0f);
  }
  return sum;
}

float ApplyContrast(float light, float contrast) {
  return 0.18f * std::pow(light / 0.18f, contrast);
}

/// What a picture of an environment shows at most; see Contrast in the shader.
float GetMostShown(NEnvironmentTexture const& environment, float contrast) {
  if (!environment.Exists()) return 0.0f;
  return environment.isLinear ? kUnbounded : ApplyContrast(1.0f, contrast);
}

/// What an environment throws onto a surface at most; see Irradiance in the shader.
float GetMostThrown(NEnvironmentTexture const& environment, float contrast, std::size_t channel) {
  if (!environment.Exists() || environment.harmonics == nullptr) return 0.0f;
  constexpr std::array<float, 9> kMost{1.0f, 1.0f, 1.0f, 1.0f, 0.5f, 0.5f, 2.0f, 0.5f, 1.0f};
  float sum = 0.0f;
  for (std::size_t i = 0; i != kMost.size(); ++i) {
    sum += kMost[i] * std::abs((*environment.harmonics)[3 * i + channel]);
  }
  return ApplyContrast(sum, contrast);
}

float GetMostDiffuse(NMaterialParameters const& material, std::size_t c) {
  if (!material.HasTexture(NTS_COLOR)) return material.diffuse[c];
  if (material.colorOperation == NCO_ADD) return material.diffuse[c] + 1.0f;
  return material.colorOperation == NCO_COVER ? std::max(material.diffuse[c], 1.0f)
                                              : material.diffuse[c];
}

bool HasLines(std::vector<NMeshPart> const& parts) {
  return std::any_of(parts.begin(), parts.end(),
                     [](NMeshPart const& part) { return !part.IsOfTriangles(); });
}

/// The light of a material at most, in one channel, before exposure.
float GetMost(NPicture const& picture, NMaterialParameters const& material, float lamps,
              float lampSum, std::size_t c) {
  bool const isOdd = material.diffuse[c] < 0.0f || material.ambient[c] < 0.0f ||
                     material.specular[c] < 0.0f || picture.ambientLight[c] < 0.0f;
  float const occlusion = material.dataScales[2];
  bool const isOpened =
      material.HasTexture(NTS_OCCLUSION) && !(occlusion >= 0.0f && occlusion <= 1.0f);
  if (isOdd || isOpened || material.hasFloatTexture || material.coatReflectance > 0.0f) {
    return kUnbounded;
  }
  bool const isAdded = material.HasTexture(NTS_COLOR) && material.colorOperation == NCO_ADD;
  float const diffuse = GetMostDiffuse(material, c);
  // The two factors for rough surfaces add up to less than 1.5.
  bool const isRough = material.roughness > 0.0f || material.HasTexture(NTS_ROUGHNESS);
  float arriving = isRough ? 1.5f * lampSum : lamps;
  // A metal mirrors in its colour.
  float const metal = material.HasTexture(NTS_METALNESS) ? diffuse : 0.0f;
  float const specular = std::max(material.specular[c], metal);
  float highlight = lampSum * (specular + std::max(material.fleckColor[c], 0.0f));
  NEnvironmentTexture const& environment =
      material.environment.Exists() ? material.environment : picture.environment;
  float const contrast = material.environmentContrast;
  if (material.irradiance > 0.0f) {
    arriving += material.irradiance * GetMostThrown(environment, contrast, c);
  }
  if (material.reflection > 0.0f && environment.Exists()) {
    float const mirrored = std::max({1.0f, material.fresnel[0], material.fresnel[1], metal});
    float const share = material.fresnel[3] + std::abs(material.fresnel[2]) * mirrored;
    highlight += material.reflection * std::max(share, 0.0f) * GetMostShown(environment, contrast);
  }
  float const ambient = material.ambient[c] * picture.ambientLight[c] * (isAdded ? 2.0f : 1.0f);
  return ambient + material.emissive[c] + diffuse * picture.exposure.diffuse * arriving + highlight;
}

/// The light of the background at most, as a share of the exposed light.
float GetMostBackground(NPicture const& picture, NEnvironmentNode const& environment,
                        NTextures& textures) {
  if (auto const image = environment.Get2DImage()) {
    if (textures.Get(*image, NTC_COLOR).isLinear) return kUnbounded;
    return static_cast<float>(environment.GetImageExposure());
  }
  auto const model = environment.GetEnvironmentMapModel();
  return model && !model->IsVisible() ? 0.0f : GetMostShown(picture.environment, 1.0f);
}

}  // namespace

NColor GetMostLight(NLamps const& lamps) {
  auto const count = static_cast<unsigned>(lamps.directionalCount);
  NColor most{};
  for (std::size_t c = 0; c != 3; ++c) {
    std::array<VX_Math::Vec3, kLampCount> vectors;
    for (std::size_t i = 0; i != count; ++i) {
      float const* const d = &lamps.directions[3 * i];
      vectors[i] = VX_Math::Vec3(d[0], d[1], d[2]) * std::max(lamps.colors[3 * i + c], 0.0f);
    }
    most[c] = GetLongestSum(vectors, count);
    for (auto i = std::size_t{count}; i != static_cast<std::size_t>(lamps.count); ++i) {
      most[c] += std::max(lamps.colors[3 * i + c], 0.0f);
    }
  }
  return most;
}

bool CanExceedWhite(NPicture const& picture, NEnvironmentNode const& environment,
                    NTextures& textures) {
  // Tone mapping makes more than white of what is brighter than that.
  float const white = picture.exposure.white > 0.0f ? picture.exposure.white : 1.0f;
  auto const exceeds = [&](float light) { return !(light * picture.exposure.factor <= white); };
  NColor const most = GetMostLight(picture.lamps);
  auto const isBright = [&](NMaterialParameters const& material) {
    for (std::size_t c = 0; c != 3; ++c) {
      float const light = GetMost(picture, material, most[c], GetLampSum(picture.lamps, c), c);
      if (exceeds(light * (1.0f + kRounding))) return true;
    }
    return false;
  };
  // Lines and points have no normals, and are drawn in their colour.
  auto const areLinesBright = [&](NMaterialParameters const& material) {
    for (std::size_t c = 0; c != 3; ++c) {
      float const light = material.emissive[c] + GetMostDiffuse(material, c);
      if (material.hasFloatTexture || exceeds(light * (1.0f + kRounding))) return true;
    }
    return false;
  };
  NMaterialParameters const* judged = nullptr;
  for (NResolvedModel const& model : picture.scene.GetModels()) {
    if (HasLines(*model.parts) && areLinesBright(*model.material)) return true;
    if (model.material == judged) continue;
    judged = model.material;
    if (isBright(*judged)) return true;
  }
  if (environment.FloorIsVisible() &&
      isBright(ReadFloorMaterialParameters(environment, textures))) {
    return true;
  }
  return exceeds(GetMostBackground(picture, environment, textures));
}

}  // namespace corvanta::renderer
