#include "corvanta/vx_math/Vec3.h"

namespace VX_Math {

namespace {

// The square of a float neither overflows nor underflows in double.
double LengthInDouble(Vec3 const& v) {
  double const x = v.x;
  double const y = v.y;
  double const z = v.z;
  return std::sqrt(x * x + y * y + z * z);
}

}  // namespace

float Vec3::LengthExtreme() const noexcept { return static_cast<float>(LengthInDouble(*this)); }

float Vec3::NormalizeExtreme() noexcept {
  double const length = LengthInDouble(*this);
  x = static_cast<float>(x / length);
  y = static_cast<float>(y / length);
  z = static_cast<float>(z / length);
  return static_cast<float>(length);
}

}  // namespace VX_Math
