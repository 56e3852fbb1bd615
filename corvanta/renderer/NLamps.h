#pragma once

#include <array>

#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/renderer/gl/shaders.h"

namespace corvanta::renderer {

/// The lamps of an environment as the shader takes them: those that are on, of all its light
/// environments in order, up to kLampCount; directional ones stand first.
struct NLamps {
  int count = 0;
  int farCount = 0;                     // directional ones, which stand before the others
  std::array<int, kLampCount> kinds{};  // 0: directional, 1: point, 2: spot
  std::array<int, kLampCount> fades{};  // 0: even, then smoothly to 0; 1: linear; 2: quadratic
  std::array<float, 3 * kLampCount> colors{};
  std::array<float, 3 * kLampCount> places{};
  std::array<float, 3 * kLampCount> directions{};
  std::array<float, 2 * kLampCount> cones{};  // cosines of half the spread and half the fall-off
  std::array<float, kLampCount> ranges{};
  // How much of the light on a level floor a shadow takes away, 0 to 1: of the directional lamps
  // from above that make shadows.
  std::array<float, kLampCount> shadows{};
};

/// A lamp that emits minus takes its colour away.
CORVANTA_API NLamps ReadLamps(data::domain::environment::NEnvironmentNode const& environment);

}  // namespace corvanta::renderer
