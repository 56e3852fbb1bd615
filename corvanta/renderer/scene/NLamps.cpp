#include "corvanta/renderer/scene/NLamps.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "corvanta/data/domain/light_env/NLamp.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"

namespace corvanta::renderer {

namespace {

namespace light_env = data::domain::light_env;
using VX_Math::Vec3;

float CosineOfHalf(double degrees) {
  double const half = std::clamp(degrees, 0.0, 360.0) / 2;
  return static_cast<float>(std::cos(half * std::numbers::pi / 180));
}

template <std::size_t N>
void Put(std::array<float, N>& to, std::size_t index, Vec3 const& v) {
  for (int c = 0; c != 3; ++c) {
    to[3 * index + static_cast<std::size_t>(c)] = std::isfinite(v[c]) ? v[c] : 0.0f;
  }
}

struct Source {
  light_env::NLamp const* lamp;
  double strength;
  NLampType type;
};

NLampType GetType(light_env::NLamp const& lamp) {
  std::wstring const type = lamp.GetType();
  if (type == light_env::LAMP_TYPE_POINT) return NLT_POINT;
  return type == light_env::LAMP_TYPE_SPOT ? NLT_SPOT : NLT_DIRECTIONAL;
}

NLampAttenuation GetAttenuation(light_env::NLamp const& lamp) {
  long const type = lamp.GetAttenuationType();
  return type == NLA_LINEAR || type == NLA_QUADRATIC ? static_cast<NLampAttenuation>(type)
                                                     : NLA_SMOOTH;
}

void Add(NLamps& lamps, Source const& source) {
  auto const index = static_cast<std::size_t>(lamps.count++);
  light_env::NLamp const& lamp = *source.lamp;
  lamps.directionalCount += source.type == NLT_DIRECTIONAL;
  lamps.types[index] = source.type;
  lamps.attenuations[index] = GetAttenuation(lamp);
  VX_Math::Matrix const transform = lamp.GetTransform();
  Vec3 position, direction;
  transform.MultVecMatrix(Vec3(), position);
  transform.MultDirMatrix(Vec3(0.0f, 0.0f, -1.0f), direction);
  direction.Normalize();
  Put(lamps.positions, index, position);
  Put(lamps.directions, index, direction);
  double const factor = lamp.IsEmitMinus() ? -source.strength : source.strength;
  Put(lamps.colors, index,
      Vec3(static_cast<float>(lamp.GetColorR() * factor),
           static_cast<float>(lamp.GetColorG() * factor),
           static_cast<float>(lamp.GetColorB() * factor)));
  float const spread = CosineOfHalf(lamp.GetSpreadAngle());
  lamps.cones[2 * index] = spread;
  // A fall-off that isn't wider leaves a sharp edge.
  lamps.cones[2 * index + 1] = std::min(CosineOfHalf(lamp.GetFalloffAngle()), spread - 1e-4f);
  lamps.ranges[index] = std::max(static_cast<float>(lamp.GetAttenuationRange()), 1e-30f);
}

// Shadows of a lamp along the ground have no end.
constexpr float kLeastSlope = 0.1f;
// The darkest shadow keeps what a floor reflects and the ambient light.
constexpr double kDarkest = 0.8;

/// The strongest of the lamps takes away as much as the darkness of its shadow says, the others
/// less in proportion to what they light a level floor.
void SetShadows(NLamps& lamps, std::vector<Source> const& sources) {
  auto const count =
      std::min(static_cast<std::size_t>(lamps.directionalCount), std::size_t{kShadowCount});
  std::array<double, kShadowCount> lights{};
  double strongest = 0;
  for (std::size_t i = 0; i != count; ++i) {
    float const brightness =
        lamps.colors[3 * i] + lamps.colors[3 * i + 1] + lamps.colors[3 * i + 2];
    lights[i] = std::max(0.0f, -lamps.directions[3 * i + 1] * brightness);
    if (sources[i].lamp->IsMakesShadow()) strongest = std::max(strongest, lights[i]);
  }
  for (std::size_t i = 0; i != count; ++i) {
    light_env::NLamp const& lamp = *sources[i].lamp;
    if (!lamp.IsMakesShadow() || -lamps.directions[3 * i + 1] < kLeastSlope) continue;
    auto const softness = static_cast<float>(lamp.GetShadowSoftness());
    lamps.softnesses[i] = std::isfinite(softness) ? std::clamp(softness, 0.0f, 10.0f) : 0.0f;
    double const shadow = kDarkest * lamp.GetShadowDarkness() * lights[i] / strongest;
    lamps.shadows[i] = std::isfinite(shadow) ? static_cast<float>(std::clamp(shadow, 0.0, 1.0)) : 0;
  }
}

}  // namespace

NLamps ReadLamps(data::domain::environment::NEnvironmentNode const& environment) {
  std::vector<Source> sources;
  for (auto const& reference : environment.GetLightEnvs()) {
    auto const lightEnv = reference.Get();
    if (!lightEnv) continue;
    double const strength = lightEnv->GetLampsCoefficient() * environment.GetHdrLight();
    for (auto const& lamp : lightEnv->GetLamps()) {
      if (lamp->IsEnabled()) sources.push_back({lamp.get(), strength, GetType(*lamp)});
    }
  }
  sources.resize(std::min<std::size_t>(sources.size(), kLampCount));
  std::stable_partition(sources.begin(), sources.end(),
                        [](Source const& source) { return source.type == NLT_DIRECTIONAL; });
  NLamps lamps;
  for (Source const& source : sources) Add(lamps, source);
  SetShadows(lamps, sources);
  return lamps;
}

}  // namespace corvanta::renderer
