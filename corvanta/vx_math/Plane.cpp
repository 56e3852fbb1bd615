#include "corvanta/vx_math/Plane.h"

#include <cmath>

#include "corvanta/vx_math/Line.h"

namespace VX_Math {

namespace {

double DotInDouble(Vec3 const& normal, double x, double y, double z) {
  return normal.x * x + normal.y * y + normal.z * z;
}

}  // namespace

Plane::Plane(Vec3 const& normal, Vec3 const& point) noexcept
    : m_normal(normal), m_distance(DotInDouble(normal, point.x, point.y, point.z)) {}

bool Plane::Intersect(Vec3 const& from, Vec3 const& to, Vec3& point) const noexcept {
  // A segment can be as long as the floats reach.
  double const dx = static_cast<double>(to.x) - from.x;
  double const dy = static_cast<double>(to.y) - from.y;
  double const dz = static_cast<double>(to.z) - from.z;
  double const t = (m_distance - DotInDouble(m_normal, from.x, from.y, from.z)) /
                   DotInDouble(m_normal, dx, dy, dz);
  if (!(t >= 0.0 && t <= 1.0)) return false;
  Vec3 const hit(static_cast<float>(from.x + t * dx), static_cast<float>(from.y + t * dy),
                 static_cast<float>(from.z + t * dz));
  if (!std::isfinite(hit.x) || !std::isfinite(hit.y) || !std::isfinite(hit.z)) return false;
  point = hit;
  return true;
}

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
