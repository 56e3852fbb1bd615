#include "corvanta/vx_math/euler_angles.h"

#include <array>
#include <cmath>
#include <numbers>

namespace VX_Math {

namespace {

constexpr double kRadians = std::numbers::pi / 180.0;
// Nearer than this to the vertical, the x axis tells nothing of the angle about z.
constexpr double kGimbalLock = 1e-6;

using Row = std::array<double, 3>;

Row Cross(Row const& a, Row const& b) noexcept {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Dot(Row const& a, Row const& b) noexcept { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

Row Scaled(Row const& row, double factor) noexcept {
  return {row[0] * factor, row[1] * factor, row[2] * factor};
}

Row Perpendicular(Row const& row, std::size_t axis) noexcept {
  if (std::abs(row[axis]) > 0.9) axis = (axis + 1) % 3;
  Row result = Scaled(row, -row[axis]);
  result[axis] += 1.0;
  return Scaled(result, 1.0 / std::sqrt(Dot(result, result)));
}

// The rotation and the scale in the upper left of a matrix.
struct Frame {
  explicit Frame(Matrix const& m) noexcept;

  Row GetAngles() const noexcept;

  std::array<Row, 3> rows{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
  std::array<double, 3> scale{};
};

Frame::Frame(Matrix const& m) noexcept {
  std::array<std::size_t, 3> known{};
  std::array<std::size_t, 3> missing{};
  std::size_t knownCount = 0;
  for (std::size_t i = 0; i != 3; ++i) {
    float const* const values = m[static_cast<int>(i)];
    Row const row{values[0], values[1], values[2]};
    scale[i] = std::sqrt(Dot(row, row));
    if (scale[i] > 0.0 && std::isfinite(scale[i])) {
      rows[i] = Scaled(row, 1.0 / scale[i]);
      known[knownCount++] = i;
    } else {
      missing[i - knownCount] = i;
    }
  }
  if (knownCount == 0) return;
  if (knownCount == 1) rows[missing[1]] = Perpendicular(rows[known[0]], missing[1]);
  if (knownCount != 3) {
    std::size_t const i = missing[0];
    rows[i] = Cross(rows[(i + 1) % 3], rows[(i + 2) % 3]);
  } else if (Dot(rows[0], Cross(rows[1], rows[2])) < 0.0) {
    rows[0] = Scaled(rows[0], -1.0);
    scale[0] = -scale[0];
  }
}

// The rows of Rx Ry Rz are (cy cz, cy sz, -sy), then x turns (-sz, cz, 0) towards (sy cz, sy sz,
// cy).
Row Frame::GetAngles() const noexcept {
  double const horizontal = std::hypot(rows[0][0], rows[0][1]);
  double const y = std::atan2(0.0 - rows[0][2], horizontal);
  double const z = horizontal < kGimbalLock ? 0.0 : std::atan2(rows[0][1], rows[0][0]);
  // Whatever z was found, x is measured against it, so that near the vertical the two make up for
  // each other.
  double const sine = std::sin(z);
  double const cosine = std::cos(z);
  double const x =
      std::atan2(sine * rows[2][0] - cosine * rows[2][1], cosine * rows[1][1] - sine * rows[1][0]);
  return {x, y, z};
}

Vec3 Narrow(Row const& row) noexcept {
  return {static_cast<float>(row[0]), static_cast<float>(row[1]), static_cast<float>(row[2])};
}

}  // namespace

Quaternion CreateQuaternion(Vec3 const& angles, bool isRadians) noexcept {
  double const half = isRadians ? 0.5 : 0.5 * kRadians;
  double const sx = std::sin(angles.x * half);
  double const cx = std::cos(angles.x * half);
  double const sy = std::sin(angles.y * half);
  double const cy = std::cos(angles.y * half);
  double const sz = std::sin(angles.z * half);
  double const cz = std::cos(angles.z * half);
  return {static_cast<float>(sx * cy * cz - cx * sy * sz),
          static_cast<float>(cx * sy * cz + sx * cy * sz),
          static_cast<float>(cx * cy * sz - sx * sy * cz),
          static_cast<float>(cx * cy * cz + sx * sy * sz)};
}

Vec3 DecomposeToEulerAngles(Matrix const& m) noexcept { return Narrow(Frame(m).GetAngles()); }

void GetTransformInfo_Degree(Matrix const& m, TransformInfo& info) noexcept {
  Frame const frame(m);
  info.translation = {m(3, 0), m(3, 1), m(3, 2)};
  info.rotation = Narrow(Scaled(frame.GetAngles(), 1.0 / kRadians));
  info.scale = Narrow(frame.scale);
}

}  // namespace VX_Math
