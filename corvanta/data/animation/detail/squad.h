#pragma once

#include "corvanta/vx_math/Quaternion.h"

namespace corvanta::data::animation::detail {

/// The rotation between two keys, with all that doesn't depend on the place between them.
struct SquadSpan {
  /// `before` and `after` are the neighbours of the keys `from` and `to`.
  SquadSpan(VX_Math::Quaternion const& before, VX_Math::Quaternion const& from,
            VX_Math::Quaternion const& to, VX_Math::Quaternion const& after) noexcept;

  VX_Math::Quaternion Evaluate(float s) const noexcept;

  VX_Math::Quaternion key;      ///< at 0
  VX_Math::Quaternion a, b, c;  ///< control points; c is the key at 1
  float outerAngle;             ///< that a and b count as having
  float innerAngle;             ///< of the key and c
};

}  // namespace corvanta::data::animation::detail
