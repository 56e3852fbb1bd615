#include "corvanta/vx_math/Quaternion.h"

#include <cmath>

namespace VX_Math {

namespace {

// Below this sine of the angle between them, two quaternions are mixed by weight.
constexpr float kLeastSine = 1e-6f;

struct Direction {
  explicit Direction(Vec3 const& v) noexcept : x(v.x), y(v.y), z(v.z) {
    double const length = std::sqrt(x * x + y * y + z * z);
    isZero = length == 0.0;
    if (isZero) return;
    x /= length;
    y /= length;
    z /= length;
  }

  double x;
  double y;
  double z;
  bool isZero;
};

Quaternion Narrow(double x, double y, double z, double w) noexcept {
  return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z),
          static_cast<float>(w)};
}

// Half a turn about an axis perpendicular to `d`: its cross product with the axis farthest from it.
Quaternion HalfTurn(Direction const& d) noexcept {
  double const x = std::abs(d.x);
  double const y = std::abs(d.y);
  double const z = std::abs(d.z);
  if (x <= y && x <= z) {
    double const length = std::hypot(d.y, d.z);
    return Narrow(0.0, d.z / length, -d.y / length, 0.0);
  }
  if (y <= z) {
    double const length = std::hypot(d.x, d.z);
    return Narrow(-d.z / length, 0.0, d.x / length, 0.0);
  }
  double const length = std::hypot(d.x, d.y);
  return Narrow(d.y / length, -d.x / length, 0.0, 0.0);
}

Quaternion Mix(Quaternion const& a, float weightA, Quaternion const& b, float weightB) noexcept {
  return {a.x * weightA + b.x * weightB, a.y * weightA + b.y * weightB,
          a.z * weightA + b.z * weightB, a.w * weightA + b.w * weightB};
}

}  // namespace

Quaternion::Quaternion(Vec3 const& axis, float radians) noexcept {
  Direction const direction(axis);
  if (direction.isZero) return;
  double const half = 0.5 * radians;
  double const sine = std::sin(half);
  *this = Narrow(direction.x * sine, direction.y * sine, direction.z * sine, std::cos(half));
}

Quaternion::Quaternion(Vec3 const& from, Vec3 const& to) noexcept {
  Direction const f(from);
  Direction const t(to);
  if (f.isZero || t.isZero) return;
  // The half-way vector is 2 cos(angle / 2) long, and f x half-way is sin(angle) long.
  double const hx = f.x + t.x;
  double const hy = f.y + t.y;
  double const hz = f.z + t.z;
  double const length = std::sqrt(hx * hx + hy * hy + hz * hz);
  if (length < 1e-7) {
    *this = HalfTurn(f);
    return;
  }
  *this = Narrow((f.y * hz - f.z * hy) / length, (f.z * hx - f.x * hz) / length,
                 (f.x * hy - f.y * hx) / length, 0.5 * length);
}

bool Quaternion::Equals(Quaternion const& q, float tolerance) const noexcept {
  return std::abs(x - q.x) <= tolerance && std::abs(y - q.y) <= tolerance &&
         std::abs(z - q.z) <= tolerance && std::abs(w - q.w) <= tolerance;
}

Quaternion Quaternion::Slerp(Quaternion const& a, Quaternion const& b, float t) noexcept {
  float const dot = a.Dot(b);
  if (dot < 0.0f) {
    return VX_Math::Slerp(a, {-b.x, -b.y, -b.z, -b.w}, t, std::acos(-dot < 1.0f ? -dot : 1.0f));
  }
  return VX_Math::Slerp(a, b, t, std::acos(dot < 1.0f ? dot : 1.0f));
}

Quaternion Slerp(Quaternion const& a, Quaternion const& b, float t, float angle) noexcept {
  float const sine = std::sin(angle);
  if (std::abs(sine) < kLeastSine) return Mix(a, 1.0f - t, b, t);
  return Mix(a, std::sin((1.0f - t) * angle) / sine, b, std::sin(t * angle) / sine);
}

}  // namespace VX_Math
