#pragma once

#include <cstddef>

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/vx_math/Vec3.h"

namespace corvanta::data::operators::ray_picker::detail {

/// A determinant strictly between these counts as 0: the triangle stands edge-on to the ray. They
/// are the floats nearest to a tenth of a billionth.
inline constexpr float kLeastDeterminant = 1e-10f;

/// Where the line o + d * t meets the triangle at `a` with the edges `e1` and `e2`, from either
/// side. Single precision throughout, in this order of operations: it decides what a pick finds.
/// Source: Moeller and Trumbore, Fast, Minimum Storage Ray/Triangle Intersection, 1997.
/// Fails: false, and `t` stays as it is, for a miss.
inline bool MeetTriangle(VX_Math::Vec3 const& o, VX_Math::Vec3 const& d, VX_Math::Vec3 const& a,
                         VX_Math::Vec3 const& e1, VX_Math::Vec3 const& e2, float& t) noexcept {
  VX_Math::Vec3 const p = d.Cross(e2);
  float const det = e1.Dot(p);
  if (det > -kLeastDeterminant && det < kLeastDeterminant) return false;
  float const inv = 1.0f / det;
  VX_Math::Vec3 const s = o - a;
  float const u = s.Dot(p) * inv;
  if (u < 0.0f || u > 1.0f) return false;
  VX_Math::Vec3 const q = s.Cross(e1);
  float const v = d.Dot(q) * inv;
  if (v < 0.0f || u + v > 1.0f) return false;
  t = e2.Dot(q) * inv;
  return true;
}

/// Whether the three indices from `first` on lie within the coordinates; a triangle counts as
/// absent otherwise.
inline bool IsTriangle(domain::geometry::NSurface const& surface, std::size_t first) noexcept {
  auto const& indices = surface.GetIndices();
  std::size_t const count = surface.GetCoords().size();
  return first + 3 <= indices.size() && indices[first] < count && indices[first + 1] < count &&
         indices[first + 2] < count;
}

}  // namespace corvanta::data::operators::ray_picker::detail
