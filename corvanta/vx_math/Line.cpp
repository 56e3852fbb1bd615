#include "corvanta/vx_math/Line.h"

#include <cmath>

namespace VX_Math {

void Line::SetValue(Vec3 const& from, Vec3 const& to) noexcept {
  // In double: the difference of two floats can be too large for a third.
  double const x = static_cast<double>(to.x) - from.x;
  double const y = static_cast<double>(to.y) - from.y;
  double const z = static_cast<double>(to.z) - from.z;
  double const length = std::sqrt(x * x + y * y + z * z);
  double const divisor = length == 0.0 ? 1.0 : length;
  m_origin = from;
  m_direction = {static_cast<float>(x / divisor), static_cast<float>(y / divisor),
                 static_cast<float>(z / divisor)};
}

}  // namespace VX_Math
