#include "corvanta/data/animation/detail/plateaus.h"

#include <cmath>

namespace corvanta::data::animation::detail {

bool ApproxEqual(double a, double b) noexcept {
  if (a == 0.0) return b == 0.0 || std::abs(b) < 1e-6;
  double const ratio = b / a;
  return ratio > 0.9990009990009991 && ratio < 1.001;
}

}  // namespace corvanta::data::animation::detail
