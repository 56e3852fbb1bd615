#include "app/scene/NStageLight.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "corvanta/renderer/scene/NLamps.h"

namespace corvanta::app {

namespace {

using renderer::NLamps;
using VX_Math::Vec3;

constexpr int kSamples = 400;
// Of a white surface; shown as a quarter of white, it hides the shape of most others.
constexpr double kDark = 0.05;

Vec3 Get3(std::array<float, std::size_t{3} * renderer::kLampCount> const& values, int lamp) {
  float const* const v = &values[std::size_t{3} * static_cast<std::size_t>(lamp)];
  return {v[0], v[1], v[2]};
}

/// What arrives of a lamp's light, from 0 to 1; see the shader of surfaces.
double GetStrength(NLamps const& lamps, int lamp, Vec3 const& toLamp, double distance) {
  auto const index = static_cast<std::size_t>(lamp);
  double const share = std::min(distance / static_cast<double>(lamps.ranges[index]), 1.0);
  double const edge = 1 - std::pow(share, 4);
  double const linear = 1 - share;
  double strength = lamps.attenuations[index] == renderer::NLA_LINEAR      ? linear
                    : lamps.attenuations[index] == renderer::NLA_QUADRATIC ? linear * linear
                                                                           : edge * edge;
  if (lamps.types[index] == renderer::NLT_SPOT) {
    double const inner = static_cast<double>(lamps.cones[2 * index]);
    double const outer = static_cast<double>(lamps.cones[2 * index + 1]);
    double const cosine = static_cast<double>(-toLamp.Dot(Get3(lamps.directions, lamp)));
    double const inside = std::clamp((cosine - outer) / (inner - outer), 0.0, 1.0);
    strength *= inside * inside * (3 - 2 * inside);
  }
  return strength;
}

/// What arrives at a point of that normal.
Vec3 GetLight(NLamps const& lamps, Vec3 const& point, Vec3 const& normal) {
  Vec3 light;
  for (int lamp = 0; lamp != lamps.count; ++lamp) {
    Vec3 toLamp = Get3(lamps.directions, lamp) * -1.0f;
    double strength = 1;
    if (lamp >= lamps.directionalCount) {
      toLamp = Get3(lamps.positions, lamp) - point;
      auto const distance = static_cast<double>(toLamp.Length());
      if (distance == 0) continue;
      toLamp.Normalize();
      strength = GetStrength(lamps, lamp, toLamp, distance);
    }
    float const cosine = std::max(toLamp.Dot(normal), 0.0f);
    light += Get3(lamps.colors, lamp) * (cosine * static_cast<float>(strength));
  }
  return light;
}

double GetBrightest(Vec3 const& light) {
  return static_cast<double>(std::max({light.x, light.y, light.z}));
}

}  // namespace

NStageLight MeasureLight(data::domain::environment::NEnvironmentNode const& environment,
                         VX_Math::Box3 const& box, Vec3 const& sight) {
  NLamps const lamps = renderer::ReadLamps(environment);
  Vec3 const ambient(static_cast<float>(environment.GetAmbientLightR()),
                     static_cast<float>(environment.GetAmbientLightG()),
                     static_cast<float>(environment.GetAmbientLightB()));
  float const radius = box.GetSize().Length() / 2;
  NStageLight result;
  int seen = 0, dark = 0;
  for (int i = 0; i != kSamples; ++i) {
    // Spread evenly along a spiral of the golden angle.
    double const y = 1 - (2 * i + 1.0) / kSamples;
    double const angle = std::numbers::pi * (3 - std::sqrt(5.0)) * i;
    double const ring = std::sqrt(1 - y * y);
    Vec3 const normal(static_cast<float>(ring * std::cos(angle)), static_cast<float>(y),
                      static_cast<float>(ring * std::sin(angle)));
    Vec3 const light = GetLight(lamps, box.GetCenter() + normal * radius, normal);
    result.brightest = std::max(result.brightest, GetBrightest(light + ambient));
    if (normal.Dot(sight) >= 0) continue;
    ++seen;
    dark += GetBrightest(light) < kDark;
  }
  result.darkShare = static_cast<double>(dark) / std::max(seen, 1);
  return result;
}

}  // namespace corvanta::app
