#include <cmath>
#include <limits>

#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/operators/ray_picker/detail/NPickIndex.h"
#include "corvanta/data/operators/ray_picker/detail/least_hit.h"
#include "corvanta/data/operators/ray_picker/detail/state.h"
#include "corvanta/data/operators/ray_picker/detail/triangle_test.h"

namespace corvanta::data::operators::ray_picker {

using domain::geometry::NGeometryNode;
using domain::geometry::NSurface;
using VX_Math::Box3;
using VX_Math::Matrix;
using VX_Math::Vec3;

bool NRayPicker::QueryIntersectionBox(Vec3 const& origin, Vec3 const& direction, Box3 const& box,
                                      double& distance) const {
  if (box.IsEmpty()) return false;
  double enter = -0.0001;
  double exit = std::numeric_limits<double>::max();
  for (int axis = 0; axis != 3; ++axis) {
    double const o = origin[axis];
    double const d = direction[axis];
    double const t1 = (static_cast<double>(box.min[axis]) - o) / d;
    double const t2 = (static_cast<double>(box.max[axis]) - o) / d;
    double const near = t1 > t2 ? t2 : t1;
    double const far = t1 > t2 ? t1 : t2;
    // 0 / 0 isn't a number, and narrows nothing.
    if (enter < near) enter = near;
    if (exit > far) exit = far;
    if (enter > exit || 0 > exit) return false;
  }
  distance = enter;
  return true;
}

namespace {

/// The surface that is tested: the first with a triangle.
NSurface const* FindSurface(NGeometryNode const& geometry) {
  for (auto const& surface : geometry.GetSurfaces()) {
    if (!surface) continue;
    for (std::size_t i = 0; i + 2 < surface->GetIndices().size(); i += 3) {
      if (detail::IsTriangle(*surface, i)) return surface.get();
    }
  }
  return nullptr;
}

}  // namespace

bool NRayPicker::QueryIntersectionGeometry(Vec3 const& origin, Vec3 const& direction,
                                           Matrix const& matrix,
                                           boost::intrusive_ptr<NGeometryNode> const& geometry,
                                           double& distance) const {
  distance = std::numeric_limits<double>::max();
  if (!geometry) return false;
  // Such a ray hits nothing at a finite point, and a direction of 0 stands edge-on to all
  // triangles.
  if (!IsFinite(origin) || !IsFinite(direction) || direction == Vec3()) return false;
  NSurface const* const surface = FindSurface(*geometry);
  if (surface == nullptr) return false;
  auto const find = [&](auto const& accept) {
    return detail::FindLeastHit(*geometry, *surface, origin, direction, accept);
  };
  if (m_state->isAhead) {
    distance = find([](float t) { return t > 0; });
  } else if (m_state->isInArea) {
    distance = find([&](float t) {
      Vec3 point;
      matrix.MultVecMatrix(origin + direction * t, point);
      return m_state->space.PointInBox(point);
    });
  } else if (m_state->isFromPlane) {
    distance = find([&](float t) { return t > m_state->planeDistance; });
  } else {
    distance = find([](float) { return true; });
  }
  return distance < std::numeric_limits<double>::max();
}

}  // namespace corvanta::data::operators::ray_picker
