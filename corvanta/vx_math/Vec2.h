#pragma once

#include "corvanta/export.h"
#include "corvanta/vx_math/fwd.h"

namespace VX_Math {

/// Two floats: a point of a view or of a picture. Starts at (0, 0).
class CORVANTA_API Vec2 {
 public:
  constexpr Vec2() noexcept = default;
  constexpr Vec2(float x0, float y0) noexcept : x(x0), y(y0) {}

  /// Requires: `index` is 0 or 1.
  float& operator[](int index) noexcept { return reinterpret_cast<float*>(this)[index]; }
  float operator[](int index) const noexcept { return reinterpret_cast<float const*>(this)[index]; }

  friend constexpr bool operator==(Vec2 const&, Vec2 const&) noexcept = default;

  float x = 0.0f;
  float y = 0.0f;
};

static_assert(sizeof(Vec2) == 8);

}  // namespace VX_Math
