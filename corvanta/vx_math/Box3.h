#pragma once

#include <limits>

#include "corvanta/export.h"
#include "corvanta/vx_math/Vec3.h"
#include "corvanta/vx_math/fwd.h"

namespace VX_Math {

/// A box along the axes, its border included. Starts empty: all of `min` the largest float, all of
/// `max` its negative.
class CORVANTA_API Box3 {
 public:
  constexpr Box3() noexcept = default;
  constexpr Box3(Vec3 const& min0, Vec3 const& max0) noexcept : min(min0), max(max0) {}

  friend constexpr bool operator==(Box3 const&, Box3 const&) noexcept = default;

  /// Whether some side is negative, or not a number.
  constexpr bool IsEmpty() const noexcept {
    return !(min.x <= max.x && min.y <= max.y && min.z <= max.z);
  }
  /// A coordinate that isn't a number adds nothing.
  constexpr void ExtendBy(Vec3 const& point) noexcept {
    min = {Least(point.x, min.x), Least(point.y, min.y), Least(point.z, min.z)};
    max = {Greatest(point.x, max.x), Greatest(point.y, max.y), Greatest(point.z, max.z)};
  }
  /// An empty box adds nothing.
  constexpr void ExtendBy(Box3 const& box) noexcept {
    if (box.IsEmpty()) return;
    min = {Least(box.min.x, min.x), Least(box.min.y, min.y), Least(box.min.z, min.z)};
    max = {Greatest(box.max.x, max.x), Greatest(box.max.y, max.y), Greatest(box.max.z, max.z)};
  }
  /// Becomes the box of its eight corners, each taken through `m` as a point; an empty box stays
  /// empty.
  void Transform(Matrix const& m) noexcept;

  constexpr bool PointInBox(Vec3 const& point) const noexcept {
    return min.x <= point.x && point.x <= max.x && min.y <= point.y && point.y <= max.y &&
           min.z <= point.z && point.z <= max.z;
  }
  /// (0, 0, 0) for the box that a default constructor makes.
  constexpr Vec3 GetCenter() const noexcept { return min * 0.5f + max * 0.5f; }
  /// (0, 0, 0) for an empty box.
  constexpr Vec3 GetSize() const noexcept { return IsEmpty() ? Vec3() : max - min; }

  Vec3 min{kLargest, kLargest, kLargest};
  Vec3 max{-kLargest, -kLargest, -kLargest};

 private:
  static constexpr float kLargest = std::numeric_limits<float>::max();

  static constexpr float Least(float a, float b) noexcept { return a < b ? a : b; }
  static constexpr float Greatest(float a, float b) noexcept { return a > b ? a : b; }
};

}  // namespace VX_Math
