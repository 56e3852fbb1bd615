#include "corvanta/data/animation/detail/spline.h"

#include <vector>

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

}  // namespace corvanta::data::animation::detail
