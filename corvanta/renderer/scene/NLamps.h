#pragma once

#include <array>
#include <cstddef>

#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/export.h"
#include "corvanta/renderer/gl/shaders.h"

namespace corvanta::renderer {

/// How a lamp sends its light; values of the shader.
enum NLampType { NLT_DIRECTIONAL = 0, NLT_POINT = 1, NLT_SPOT = 2 };

/// How its light decreases to 0 at its range; values of the shader.
enum NLampAttenuation { NLA_SMOOTH = 0, NLA_LINEAR = 1, NLA_QUADRATIC = 2 };

/// The lamps of an environment as the shader takes them: the enabled ones of all its light
/// environments in order, up to kLampCount. Directional ones come first.
struct NLamps {
  int count = 0;
  int directionalCount = 0;
  std::array<NLampType, kLampCount> types{};
  std::array<NLampAttenuation, kLampCount> attenuations{};
  std::array<float, std::size_t{3} * kLampCount> colors{};
  std::array<float, std::size_t{3} * kLampCount> positions{};
  std::array<float, std::size_t{3} * kLampCount> directions{};
  // Cosines of half the spread and half the fall-off.
  std::array<float, std::size_t{2} * kLampCount> cones{};
  std::array<float, kLampCount> ranges{};
  // How much of the light on a level floor a shadow takes away, 0 to 1: of the directional lamps
  // from above that make shadows.
  std::array<float, kShadowCount> shadows{};
  // Of their edges; 0 is sharp.
  std::array<float, kShadowCount> softnesses{};
};

/// Reads the lamps of `environment`. One that emits minus has a negative colour.
CORVANTA_API NLamps ReadLamps(data::domain::environment::NEnvironmentNode const& environment);

}  // namespace corvanta::renderer
