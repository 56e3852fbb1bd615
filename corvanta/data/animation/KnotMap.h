#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "corvanta/data/operators/animation/detail/NTimeIndex.h"
#include "corvanta/export.h"

namespace corvanta::data::animation {

/// Where a time falls on the knots 0, 1, 2, ... of a curve.
struct KnotPosition {
  std::size_t span;  ///< between the knots `span` and `span + 1`
  double knot;       ///< from `span` up to and with `span + 1`
};

/// Leads from times to knots: knot i stands at the i-th key's time, and between two keys the way is
/// straight. So unevenly spaced keys bend the speed along a curve, not its shape.
class CORVANTA_API KnotMap {
 public:
  /// Keeps a copy.
  /// Requires: two ascending times or more. Of equal times the last one stands for that time.
  explicit KnotMap(std::vector<double> const& times);

  /// The first knot before the first key, the last one from the last key on and for NaN.
  KnotPosition Find(double t) const noexcept {
    std::vector<double> const& times = m_index.GetTimes();
    std::size_t const right = m_index.UpperBound(t);
    if (right == 0) return {0, 0.0};
    if (right == times.size()) return {right - 2, static_cast<double>(right - 1)};
    std::size_t const left = right - 1;
    double const knot =
        (t - times[left]) / (times[right] - times[left]) + static_cast<double>(left);
    // The sum can round up to the next knot, and isn't a number beside an infinite time.
    if (knot < static_cast<double>(right)) return {left, knot};
    if (knot != knot) return {times.size() - 2, static_cast<double>(times.size() - 1)};
    return {std::min(right, times.size() - 2), static_cast<double>(right)};
  }

 private:
  operators::animation::detail::NTimeIndex m_index;
};

}  // namespace corvanta::data::animation
