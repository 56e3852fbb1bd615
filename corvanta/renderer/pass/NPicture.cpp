#include "corvanta/renderer/pass/NPicture.h"

#include <algorithm>
#include <cmath>

#include "corvanta/renderer/pass/brightness.h"

namespace corvanta::renderer {

namespace {

using data::domain::environment::NEnvironmentNode;

NColor Color(double r, double g, double b) {
  return {static_cast<float>(r), static_cast<float>(g), static_cast<float>(b)};
}

constexpr double kFullBloom = 600;  // all of the light above white is seen around it once more
constexpr float kMostGlow = 10;

float ReadGlow(double strength) {
  auto const glow = static_cast<float>(strength / kFullBloom);
  return std::isfinite(glow) ? std::clamp(glow, 0.0f, kMostGlow) : 0.0f;
}

float ReadNumber(double value) {
  auto const narrow = static_cast<float>(value);
  return std::isfinite(narrow) ? std::max(narrow, 0.0f) : 0.0f;
}

NOcclusion ReadOcclusion(NEnvironmentNode const& environment, NResolvedScene const& scene) {
  NOcclusion occlusion;
  if (!environment.IsSSAOEnabled()) return occlusion;
  VX_Math::Box3 const box = scene.GetBox();
  if (box.IsEmpty()) return occlusion;
  float const size = box.GetSize().Length();
  occlusion.radius = size * ReadNumber(environment.GetSSAORadius());
  occlusion.falloff = std::max(size * ReadNumber(environment.GetSSAODepthFalloff()), 1e-30f);
  occlusion.contrast = ReadNumber(environment.GetSSAOContrast());
  occlusion.isEnabled = occlusion.radius > 0.0f && occlusion.contrast > 0.0f;
  return occlusion;
}

NExposure ReadExposure(NEnvironmentNode const& environment, NViewpoint const& viewpoint) {
  NExposure exposure;
  auto const factor = static_cast<float>(std::exp2(environment.GetHdrExposure()));
  auto const gamma = static_cast<float>(environment.GetHdrGamma());
  exposure.factor = viewpoint.exposure * (std::isfinite(factor) ? factor : 1.0f);
  exposure.diffuse = ReadNumber(environment.GetHdrDiffuse());
  exposure.gamma = viewpoint.gamma * (std::isfinite(gamma) && gamma > 0.0f ? gamma : 1.0f);
  if (environment.ToneMappingIsEnabled()) {
    exposure.white = std::max(static_cast<float>(environment.GetWhiteBrightness()), 1e-3f);
  }
  return exposure;
}

}  // namespace

NPicture MakePicture(NResolvedScene& scene, NViewpoint const& viewpoint,
                     NEnvironmentNode const* environment) {
  NPicture picture{scene, viewpoint, {}, {}, {}, {}, {}};
  if (environment == nullptr) return picture;
  picture.backgroundColor =
      Color(environment->GetColorR(), environment->GetColorG(), environment->GetColorB());
  picture.ambientLight = Color(environment->GetAmbientLightR(), environment->GetAmbientLightG(),
                               environment->GetAmbientLightB());
  picture.lamps = ReadLamps(*environment);
  picture.glow = ReadGlow(environment->GetHdrBloom());
  picture.star = ReadGlow(environment->GetHdrStar());
  picture.occlusion = ReadOcclusion(*environment, scene);
  picture.exposure = ReadExposure(*environment, viewpoint);
  picture.environment =
      ReadEnvironmentTexture(environment->GetEnvironmentMap(), scene.GetTextures());
  return picture;
}

void LimitGlow(NPicture& picture, NTextures& textures, NEnvironmentNode const& environment) {
  bool const isDrawn = picture.glow > 0.0f || picture.star > 0.0f;
  if (isDrawn && picture.hasBackground && CanExceedWhite(picture, environment, textures)) return;
  picture.glow = picture.star = 0.0f;
}

}  // namespace corvanta::renderer
