#pragma once

#include <cmath>
#include <limits>

namespace corvanta::app {

/// Whether a float can hold `number`, as transforms and picks need it; not so a NaN.
inline bool IsInFloatRange(double number) {
  return std::abs(number) <= static_cast<double>(std::numeric_limits<float>::max());
}

}  // namespace corvanta::app
