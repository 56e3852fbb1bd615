#pragma once

#include <limits>

#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/operators/ray_picker/detail/NPickIndex.h"
#include "corvanta/data/operators/ray_picker/detail/triangle_test.h"
#include "corvanta/data/structs/convert.h"

namespace corvanta::data::operators::ray_picker::detail {

/// The least t, of either sign, at which the line meets a triangle of `surface` and which `accept`
/// takes, by testing all of them: what every other way must equal.
/// Fails: the largest double where there is none.
template <class Accept>
double FindLeastHitExhaustively(domain::geometry::NSurface const& surface,
                                VX_Math::Vec3 const& origin, VX_Math::Vec3 const& direction,
                                Accept const& accept) {
  auto const& coords = surface.GetCoords();
  auto const& indices = surface.GetIndices();
  double least = std::numeric_limits<double>::max();
  for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
    if (!IsTriangle(surface, i)) continue;
    VX_Math::Vec3 const a = structs::ToVec3(coords[indices[i]]);
    VX_Math::Vec3 const e1 = structs::ToVec3(coords[indices[i + 1]]) - a;
    VX_Math::Vec3 const e2 = structs::ToVec3(coords[indices[i + 2]]) - a;
    float t;
    if (MeetTriangle(origin, direction, a, e1, e2, t) && t < least && accept(t)) {
      least = t;
    }
  }
  return least;
}

/// The same through the index of `geometry`, whose first surface with triangles `surface` is, where
/// that pays.
template <class Accept>
double FindLeastHit(domain::geometry::NGeometryNode const& geometry,
                    domain::geometry::NSurface const& surface, VX_Math::Vec3 const& origin,
                    VX_Math::Vec3 const& direction, Accept const& accept) {
  if (NTriangleIndex::CanServe(origin, direction)) {
    if (auto const* const index = NPickIndex::Of(geometry).Use(surface)) {
      return index->FindLeast(origin, direction, accept);
    }
  }
  return FindLeastHitExhaustively(surface, origin, direction, accept);
}

}  // namespace corvanta::data::operators::ray_picker::detail
