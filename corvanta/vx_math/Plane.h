#pragma once

#include "corvanta/export.h"
#include "corvanta/vx_math/Vec3.h"
#include "corvanta/vx_math/fwd.h"

namespace VX_Math {

/// The points p for which `normal` . p = `distance`; the normal may have any length. Starts with a
/// zero normal, as a plane that nothing meets.
class CORVANTA_API Plane {
 public:
  constexpr Plane() noexcept = default;
  constexpr Plane(Vec3 const& normal, double distance) noexcept
      : m_normal(normal), m_distance(distance) {}
  /// The plane through `point`.
  Plane(Vec3 const& normal, Vec3 const& point) noexcept;

  constexpr Vec3 const& GetNormal() const noexcept { return m_normal; }
  constexpr double GetDistance() const noexcept { return m_distance; }

  /// Finds where the segment from `from` to `to`, its ends included, meets the plane.
  /// Fails: false, and `point` stays as it is, if it doesn't, if it runs parallel to the plane, and
  /// if the point isn't finite.
  bool Intersect(Vec3 const& from, Vec3 const& to, Vec3& point) const noexcept;

 private:
  Vec3 m_normal;
  double m_distance = 0.0;
};

}  // namespace VX_Math
