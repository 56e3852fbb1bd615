#include "corvanta/platform/d3dx9.h"

#include <cmath>
#include <cstdio>

#include "corvanta/platform/convert.h"
#include "corvanta/platform/debug.h"

namespace corvanta::platform {

namespace {

using VX_Math::Matrix;
using VX_Math::Quaternion;
using VX_Math::Vec3;

float Narrow(double value) noexcept { return static_cast<float>(value); }

struct Vector {
  double x;
  double y;
  double z;
};

double Dot(Vector const& a, Vector const& b) noexcept { return a.x * b.x + a.y * b.y + a.z * b.z; }

Vector Cross(Vector const& a, Vector const& b) noexcept {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Vector Normalized(Vector const& v) noexcept {
  double const length = std::sqrt(Dot(v, v));
  if (length == 0.0) return v;
  return {v.x / length, v.y / length, v.z / length};
}

// A quaternion in double: the vector part, then the scalar one.
struct Versor {
  Vector v;
  double w;
};

Versor Widen(Quaternion const& q) noexcept { return {{q.x, q.y, q.z}, q.w}; }

Quaternion Narrow(Versor const& q) noexcept {
  return {Narrow(q.v.x), Narrow(q.v.y), Narrow(q.v.z), Narrow(q.w)};
}

Versor operator*(Versor const& a, Versor const& b) noexcept {
  Vector const cross = Cross(a.v, b.v);
  return {{a.w * b.v.x + b.w * a.v.x + cross.x, a.w * b.v.y + b.w * a.v.y + cross.y,
           a.w * b.v.z + b.w * a.v.z + cross.z},
          a.w * b.w - Dot(a.v, b.v)};
}

// `q`, or its negative if that is the nearer one to `reference`. At the same distance `q` stays.
Versor Nearer(Versor const& q, Versor const& reference) noexcept {
  if (Dot(q.v, reference.v) + q.w * reference.w >= 0.0) return q;
  return {{-q.v.x, -q.v.y, -q.v.z}, -q.w};
}

// ln(from^-1 to), a vector. The lengths of the two don't matter.
Vector Logarithm(Versor const& from, Versor const& to) noexcept {
  Versor const inverse{{-from.v.x, -from.v.y, -from.v.z}, from.w};
  Versor const q = inverse * to;
  double const sine = std::sqrt(Dot(q.v, q.v));
  if (sine == 0.0) return {0.0, 0.0, 0.0};
  double const factor = std::atan2(sine, q.w) / sine;
  return {q.v.x * factor, q.v.y * factor, q.v.z * factor};
}

// key exp(-(ln(key^-1 next) + ln(key^-1 previous)) / 4): Shoemake, "Quaternion calculus and fast
// animation", SIGGRAPH course notes 1987.
Versor ControlPoint(Versor const& previous, Versor const& key, Versor const& next) noexcept {
  Vector const forward = Logarithm(key, next);
  Vector const backward = Logarithm(key, previous);
  Vector const v{-0.25 * (forward.x + backward.x), -0.25 * (forward.y + backward.y),
                 -0.25 * (forward.z + backward.z)};
  double const angle = std::sqrt(Dot(v, v));
  double const factor = angle == 0.0 ? 1.0 : std::sin(angle) / angle;
  return key * Versor{{v.x * factor, v.y * factor, v.z * factor}, std::cos(angle)};
}

}  // namespace

Matrix MatrixPerspectiveOffCenterRH(float left, float right, float bottom, float top, float nearZ,
                                    float farZ) noexcept {
  double const l = left, r = right, b = bottom, t = top, n = nearZ, f = farZ;
  Matrix m;
  m(0, 0) = Narrow(2.0 * n / (r - l));
  m(1, 1) = Narrow(2.0 * n / (t - b));
  m(2, 0) = Narrow((l + r) / (r - l));
  m(2, 1) = Narrow((t + b) / (t - b));
  m(2, 2) = Narrow(f / (n - f));
  m(2, 3) = -1.0f;
  m(3, 2) = Narrow(n * f / (n - f));
  m(3, 3) = 0.0f;
  return m;
}

Matrix MatrixOrthoOffCenterRH(float left, float right, float bottom, float top, float nearZ,
                              float farZ) noexcept {
  double const l = left, r = right, b = bottom, t = top, n = nearZ, f = farZ;
  Matrix m;
  m(0, 0) = Narrow(2.0 / (r - l));
  m(1, 1) = Narrow(2.0 / (t - b));
  m(2, 2) = Narrow(1.0 / (n - f));
  m(3, 0) = Narrow((l + r) / (l - r));
  m(3, 1) = Narrow((t + b) / (b - t));
  m(3, 2) = Narrow(n / (n - f));
  return m;
}

Matrix MatrixLookAtRH(Vec3 const& eye, Vec3 const& at, Vec3 const& up) noexcept {
  Vector const e{eye.x, eye.y, eye.z};
  Vector const z = Normalized({e.x - at.x, e.y - at.y, e.z - at.z});
  Vector const x = Normalized(Cross({up.x, up.y, up.z}, z));
  Vector const y = Cross(z, x);
  return {Narrow(x.x),        Narrow(y.x),        Narrow(z.x),        0.0f,
          Narrow(x.y),        Narrow(y.y),        Narrow(z.y),        0.0f,
          Narrow(x.z),        Narrow(y.z),        Narrow(z.z),        0.0f,
          Narrow(-Dot(x, e)), Narrow(-Dot(y, e)), Narrow(-Dot(z, e)), 1.0f};
}

void QuaternionSquadSetup(Quaternion& a, Quaternion& b, Quaternion& c, Quaternion const& q0,
                          Quaternion const& q1, Quaternion const& q2,
                          Quaternion const& q3) noexcept {
  Versor const key = Widen(q1);
  Versor const previous = Nearer(Widen(q0), key);
  Versor const next = Nearer(Widen(q2), key);
  Versor const last = Nearer(Widen(q3), next);
  a = Narrow(ControlPoint(previous, key, next));
  b = Narrow(ControlPoint(key, next, last));
  c = Narrow(next);
}

void OutputDebugString(std::wstring const& text) {
  std::string const narrow = ToNarrow(text);
  std::fwrite(narrow.data(), 1, narrow.size(), stderr);
}

}  // namespace corvanta::platform
