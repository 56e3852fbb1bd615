#pragma once

#include <cmath>

#include "corvanta/export.h"
#include "corvanta/vx_math/fwd.h"

namespace VX_Math {

/// Three floats: a point, a direction, or a value for each axis. Starts at (0, 0, 0).
class CORVANTA_API Vec3 {
 public:
  constexpr Vec3() noexcept = default;
  constexpr Vec3(float x0, float y0, float z0) noexcept : x(x0), y(y0), z(z0) {}

  /// Requires: `index` is 0, 1 or 2.
  float& operator[](int index) noexcept { return reinterpret_cast<float*>(this)[index]; }
  float operator[](int index) const noexcept { return reinterpret_cast<float const*>(this)[index]; }

  constexpr Vec3 operator-() const noexcept { return {-x, -y, -z}; }
  constexpr Vec3& operator+=(Vec3 const& v) noexcept { return *this = *this + v; }
  constexpr Vec3& operator-=(Vec3 const& v) noexcept { return *this = *this - v; }
  constexpr Vec3& operator*=(float factor) noexcept { return *this = *this * factor; }

  friend constexpr Vec3 operator+(Vec3 const& a, Vec3 const& b) noexcept {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
  }
  friend constexpr Vec3 operator-(Vec3 const& a, Vec3 const& b) noexcept {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
  }
  friend constexpr Vec3 operator*(Vec3 const& v, float factor) noexcept {
    return {v.x * factor, v.y * factor, v.z * factor};
  }
  friend constexpr Vec3 operator*(float factor, Vec3 const& v) noexcept { return v * factor; }
  friend constexpr bool operator==(Vec3 const&, Vec3 const&) noexcept = default;

  /// Turns this vector round, in place.
  constexpr Vec3& Negate() noexcept { return *this = -*this; }
  /// Gives this vector the length 1, in place; a zero vector stays as it is. Returns the length
  /// before.
  float Normalize() noexcept {
    float const length = Length();
    if (length != 0.0f) {
      if (length < kLeastDivisor || std::isinf(length)) return NormalizeExtreme();
      x /= length;
      y /= length;
      z /= length;
    }
    return length;
  }
  float Length() const noexcept {
    float const square = Dot(*this);
    // Outside this range the square has overflowed or lost its digits.
    if (square >= 1e-30f && square <= 3e38f) return std::sqrt(square);
    return LengthExtreme();
  }
  constexpr float Dot(Vec3 const& v) const noexcept { return x * v.x + y * v.y + z * v.z; }
  /// This vector times `v`, in this order.
  constexpr Vec3 Cross(Vec3 const& v) const noexcept {
    return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
  }

  float x = 0.0f;
  float y = 0.0f;
  float z = 0.0f;

 private:
  static constexpr float kLeastDivisor = 1.17549435e-38f;

  float LengthExtreme() const noexcept;
  float NormalizeExtreme() noexcept;
};

static_assert(sizeof(Vec3) == 12);

/// What attributes hold as doubles, in single precision.
constexpr Vec3 Narrow(double x, double y, double z) noexcept {
  return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
}

inline bool IsFinite(Vec3 const& v) noexcept {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

}  // namespace VX_Math
