#pragma once

#include "corvanta/export.h"
#include "corvanta/vx_math/Vec3.h"
#include "corvanta/vx_math/fwd.h"

namespace VX_Math {

/// A line without ends: an origin and a direction. Starts with both at (0, 0, 0), a line that goes
/// nowhere.
class CORVANTA_API Line {
 public:
  constexpr Line() noexcept = default;
  Line(Vec3 const& from, Vec3 const& to) noexcept { SetValue(from, to); }

  /// Goes from `from` towards `to`: the direction has the length 1, or 0 if both are one point.
  void SetValue(Vec3 const& from, Vec3 const& to) noexcept;

  constexpr Vec3 const& GetOrigin() const noexcept { return m_origin; }
  constexpr Vec3 const& GetDirection() const noexcept { return m_direction; }

 private:
  Vec3 m_origin;
  Vec3 m_direction;
};

}  // namespace VX_Math
