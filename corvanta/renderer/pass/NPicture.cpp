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

NExposure ReadExposure(NEnvironmentNode const& environment, NViewpoint const& viewpoint) {
  NExposure exposure;
  auto const factor = static_cast<float>(std::exp2(environment.GetHdrExposure()));
  auto const gamma = static_cast<float>(environment.GetHdrGamma());
  exposure.factor = viewpoint.exposure * (std::isfinite(factor) ? factor : 1.0f);
  exposure.gamma = viewpoint.gamma * (std::isfinite(gamma) && gamma > 0.0f ? gamma : 1.0f);
  if (environment.ToneMappingIsEnabled()) {
    exposure.white = std::max(static_cast<float>(environment.GetWhiteBrightness()), 1e-3f);
  }
  return exposure;
}

}  // namespace

NPicture MakePicture(NResolvedScene& scene, NViewpoint const& viewpoint,
                     NEnvironmentNode const* environment) {
  NPicture picture{scene, viewpoint, {}, {}, {}};
  if (environment == nullptr) return picture;
  picture.backgroundColor =
      Color(environment->GetColorR(), environment->GetColorG(), environment->GetColorB());
  picture.ambientLight = Color(environment->GetAmbientLightR(), environment->GetAmbientLightG(),
                               environment->GetAmbientLightB());
  picture.lamps = ReadLamps(*environment);
  auto const glow = static_cast<float>(environment->GetHdrBloom() / kFullBloom);
  picture.glow = std::isfinite(glow) ? std::clamp(glow, 0.0f, kMostGlow) : 0.0f;
  picture.exposure = ReadExposure(*environment, viewpoint);
  picture.environment =
      ReadEnvironmentTexture(environment->GetEnvironmentMap(), scene.GetTextures());
  if (picture.glow > 0.0f && !CanExceedWhite(picture, *environment, scene.GetTextures())) {
    picture.glow = 0.0f;
  }
  return picture;
}

}  // namespace corvanta::renderer
