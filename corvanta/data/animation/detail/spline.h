#pragma once

#include <cstddef>

namespace corvanta::data::animation::detail {

/// A key of a natural cubic spline over the knots 0, 1, 2, ...
struct SplineKnot {
  double value;
  double curvature;  ///< the second derivative
};

/// Fills the curvatures of `count` knots from their values: 0 at both ends.
/// Requires: two knots or more.
void SolveNaturalSpline(SplineKnot* knots, std::size_t count);

/// The spline `b` behind `left`, in the span between it and the next knot.
/// Cost: one division; a knot gives exactly its value.
inline double EvaluateSpline(SplineKnot const* left, double a, double b) noexcept {
  return a * left[0].value + b * left[1].value +
         ((a * a * a - a) * left[0].curvature + (b * b * b - b) * left[1].curvature) / 6.0;
}

}  // namespace corvanta::data::animation::detail
