#pragma once

#include "tests/support/test.h"

/// Compares two vectors, quaternions or matrices float by float; NaN is near to nothing.
template <class T>
testing::AssertionResult Near(T const& a, T const& b, double tolerance) {
  float const* const x = reinterpret_cast<float const*>(&a);
  float const* const y = reinterpret_cast<float const*>(&b);
  for (std::size_t i = 0; i != sizeof(T) / sizeof(float); ++i) {
    if (std::abs(static_cast<double>(x[i]) - y[i]) <= tolerance) continue;
    return testing::AssertionFailure() << "element " << i << ": " << x[i] << " and " << y[i];
  }
  return testing::AssertionSuccess();
}

inline VX_Math::Vec3 Point(VX_Math::Vec3 const& in, VX_Math::Matrix const& m) {
  VX_Math::Vec3 out;
  m.MultVecMatrix(in, out);
  return out;
}

inline VX_Math::Vec3 Direction(VX_Math::Vec3 const& in, VX_Math::Matrix const& m) {
  VX_Math::Vec3 out;
  m.MultDirMatrix(in, out);
  return out;
}
