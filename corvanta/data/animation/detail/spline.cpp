#include "corvanta/data/animation/detail/spline.h"

#include <cmath>
#include <vector>

#include "corvanta/data/animation/detail/plateaus.h"

namespace corvanta::data::animation::detail {

// Elimination and back substitution of the tridiagonal system, whose rows for knots one apart are
// d[i-1] + 4 d[i] + d[i+1] = 6 (y[i-1] - 2 y[i] + y[i+1]). The left neighbour weighs 1/2.
void SolveNaturalSpline(SplineKnot* knots, std::size_t count) {
  std::vector<double> right(count - 1);
  knots[0].curvature = 0.0;
  for (std::size_t i = 1; i + 1 < count; ++i) {
    double const pivot = 0.5 * knots[i - 1].curvature + 2.0;
    knots[i].curvature = -0.5 / pivot;
    double const bend =
        (knots[i + 1].value - knots[i].value) - (knots[i].value - knots[i - 1].value);
    right[i] = (6.0 * bend / 2.0 - 0.5 * right[i - 1]) / pivot;
  }
  knots[count - 1].curvature = 0.0;
  for (std::size_t i = count - 1; i-- != 0;) {
    knots[i].curvature = knots[i].curvature * knots[i + 1].curvature + right[i];
  }
}

bool ApproxEqual(double a, double b) noexcept {
  if (a == 0.0) return b == 0.0 || std::abs(b) < 1e-6;
  double const ratio = b / a;
  return ratio > 0.9990009990009991 && ratio < 1.001;
}

}  // namespace corvanta::data::animation::detail
