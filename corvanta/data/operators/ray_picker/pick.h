#pragma once

#include <cstddef>
#include <vector>

#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/Box3.h"
#include "corvanta/vx_math/Line.h"
#include "corvanta/vx_math/Plane.h"
#include "corvanta/vx_math/Vec2.h"

/// Whole picks: each sets a picker up, walks, tests the triangles, and appends what is hit, nearest
/// first. The output isn't cleared before.
///
/// Units: `point` in the unit square of the view, y upwards; points global.
/// Fails: false, and no output, where nothing is hit and where a pointer is null.
namespace corvanta::data::operators::ray_picker {

using ModelPath =
    domain::scenegraph::NSceneGraphPath<domain::scenegraph::item::NSceneGraphModelNode>;

CORVANTA_API bool PickDetail(domain::scene::NSceneNode const& scene, VX_Math::Vec2 const* point,
                             VX_Math::Matrix const* viewProjection, std::vector<ModelPath>& paths,
                             std::vector<VX_Math::Vec3>& points);
CORVANTA_API bool PickDetail(
    domain::scene::NSceneNode const& scene, VX_Math::Vec2 const* point,
    VX_Math::Matrix const* viewProjection,
    std::vector<domain::scenegraph::item::NSceneGraphModelNode const*>& models);
/// Only hits inside the global box `area` count.
CORVANTA_API bool PickDetailInArea(domain::scene::NSceneNode const& scene,
                                   VX_Math::Vec2 const* point,
                                   VX_Math::Matrix const* viewProjection, VX_Math::Box3 const& area,
                                   std::vector<ModelPath>& paths,
                                   std::vector<VX_Math::Vec3>& points);
/// Only hits beyond `plane` count. The points end with one more: where the ray meets the plane.
CORVANTA_API bool PickDetailFromPlane(domain::scene::NSceneNode const& scene,
                                      VX_Math::Vec2 const* point,
                                      VX_Math::Matrix const* viewProjection,
                                      VX_Math::Plane const& plane, std::vector<ModelPath>& paths,
                                      std::vector<VX_Math::Vec3>& points);
/// From an item down, without a tree: the item's transform counts, what stands above it doesn't.
CORVANTA_API bool PickModel(
    domain::scenegraph::item::NSceneGraphItemNode const& item, VX_Math::Line const* line,
    std::vector<domain::scenegraph::item::NSceneGraphModelNode const*>& models);

/// What one of many rays hits, nearest first.
struct CORVANTA_API RayHits {
  std::vector<ModelPath> paths;
  std::vector<VX_Math::Vec3> points;  // one a path
};
/// Many rays at once: an element of `hits` a ray, each what the ray alone would hit. For pictures,
/// selections by an area of the view, and whatever else asks for rays by the thousand.
/// Units: the rays are global.
/// Fails: false where nothing is hit; `hits` has an empty element a ray then.
/// Cost: rays that follow each other are walked together, so give neighbours in turn.
CORVANTA_API bool PickDetail(domain::scene::NSceneNode const& scene,
                             std::vector<VX_Math::Line> const& rays, std::vector<RayHits>& hits);

/// Whether the ray meets any triangle ahead of its origin, of what a pick may hit.
/// Cost: ends at the first triangle that is found.
CORVANTA_API bool HitsAnything(domain::scene::NSceneNode const& scene, VX_Math::Line const& ray);
/// Whether `point` can be seen from `from`: no triangle crosses the line between them. Its last
/// hundred-thousandth doesn't count, so that a point on a surface isn't hidden by that surface.
/// Units: both are global.
CORVANTA_API bool IsVisible(domain::scene::NSceneNode const& scene, VX_Math::Vec3 const& from,
                            VX_Math::Vec3 const& point);
/// The same for many points.
CORVANTA_API std::vector<bool> AreVisible(domain::scene::NSceneNode const& scene,
                                          VX_Math::Vec3 const& from,
                                          std::vector<VX_Math::Vec3> const& points);

/// What the pickers' index of a geometry, a bounding volume hierarchy of its triangles, is.
struct NIndexStatistics {
  std::size_t triangleCount;  // 0 while there is no index
  double buildSeconds;        // what it took to build
};

/// The index is built when picks since the geometry's last change have tested eight times its
/// triangles, and is shared by all models that show it.
CORVANTA_API NIndexStatistics GetIndexStatistics(domain::geometry::NGeometryNode const& geometry);

}  // namespace corvanta::data::operators::ray_picker
