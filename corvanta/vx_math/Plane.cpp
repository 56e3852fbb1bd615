#include "corvanta/vx_math/Plane.h"

#include <cmath>

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

}  // namespace VX_Math
