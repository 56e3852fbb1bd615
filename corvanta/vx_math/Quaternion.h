#pragma once

#include "corvanta/export.h"
#include "corvanta/vx_math/Vec3.h"
#include "corvanta/vx_math/fwd.h"

namespace VX_Math {

/// A rotation as four floats, the vector part first. Starts as no rotation, (0, 0, 0, 1).
///
/// Members are taken as they are, never normalised; q and -q turn alike but aren't equal.
class CORVANTA_API Quaternion {
 public:
  constexpr Quaternion() noexcept = default;
  constexpr Quaternion(float x0, float y0, float z0, float w0) noexcept
      : x(x0), y(y0), z(z0), w(w0) {}
  /// Turns about `axis`, of any length, counterclockwise as seen from its tip. A zero axis gives no
  /// rotation.
  Quaternion(Vec3 const& axis, float radians) noexcept;
  /// Takes the direction `from` to the direction `to` by the shortest way.
  /// Opposite directions turn by pi about some perpendicular axis; a zero vector gives no rotation.
  Quaternion(Vec3 const& from, Vec3 const& to) noexcept;

  /// Requires: `index` is 0 to 3.
  float& operator[](int index) noexcept { return reinterpret_cast<float*>(this)[index]; }
  float operator[](int index) const noexcept { return reinterpret_cast<float const*>(this)[index]; }

  friend constexpr bool operator==(Quaternion const&, Quaternion const&) noexcept = default;

  /// Whether no component differs by more than `tolerance`.
  bool Equals(Quaternion const& q, float tolerance) const noexcept;
  constexpr float Dot(Quaternion const& q) const noexcept {
    return x * q.x + y * q.y + z * q.z + w * q.w;
  }

  /// The rotation at `t` on the shorter arc from `a` (at 0) to `b` (at 1).
  /// Requires: `a` and `b` have the length 1.
  static Quaternion Slerp(Quaternion const& a, Quaternion const& b, float t) noexcept;

  float x = 0.0f;
  float y = 0.0f;
  float z = 0.0f;
  float w = 1.0f;
};

static_assert(sizeof(Quaternion) == 16);

/// The point at `t` on the arc from `a` (at 0) to `b` (at 1), taking `angle` as the angle of the
/// two and changing no sign. Where the angle's sine is below 1e-6, it is the weighted sum.
///
/// Units: `angle` in radians.
CORVANTA_API Quaternion Slerp(Quaternion const& a, Quaternion const& b, float t,
                              float angle) noexcept;

}  // namespace VX_Math
