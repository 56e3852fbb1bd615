#pragma once

#include "corvanta/export.h"
#include "corvanta/vx_math/Vec3.h"

namespace VX_Math {

/// The parts of a matrix that scales, then turns, then moves.
struct CORVANTA_API TransformInfo {
  Vec3 translation;
  Vec3 rotation;  // angles about x, then y, then z
  Vec3 scale{1.0f, 1.0f, 1.0f};
};

}  // namespace VX_Math
