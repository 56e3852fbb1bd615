#include "corvanta/data/operators/ray_picker/pick.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/operators/ray_picker/NRayPicker.h"
#include "corvanta/data/operators/ray_picker/detail/NPickIndex.h"

namespace corvanta::data::operators::ray_picker {

namespace {

using domain::scene::NSceneNode;
using domain::scenegraph::item::NSceneGraphModelNode;
using VX_Math::Matrix;
using VX_Math::Vec2;
using VX_Math::Vec3;

/// The walk and the tests of a picker that is set up.
/// Fails: false where nothing is hit.
bool Pick(NRayPicker& picker, domain::NNode const& start) {
  start.Accept(picker);
  picker.SortWithDistance();
  if (picker.GetPickCount() == 0) return false;
  picker.CheckDetail();
  return picker.GetPickCount() != 0;
}

/// Calls `walk(bundle, first)` for the rays in runs of so many that their records take little
/// memory.
template <class Walk>
void ForEachBundle(std::vector<VX_Math::Line> const& rays, Walk const& walk) {
  constexpr std::size_t kBundle = 64;
  for (std::size_t first = 0; first < rays.size(); first += kBundle) {
    std::size_t const end = std::min(rays.size(), first + kBundle);
    auto const at = [&rays](std::size_t i) {
      return rays.begin() + static_cast<std::ptrdiff_t>(i);
    };
    walk(std::vector<VX_Math::Line>(at(first), at(end)), first);
  }
}

void AppendHits(NRayPicker& picker, std::vector<ModelPath>& paths, std::vector<Vec3>& points) {
  auto const pathCount = static_cast<std::ptrdiff_t>(paths.size());
  auto const pointCount = static_cast<std::ptrdiff_t>(points.size());
  paths.reserve(paths.size() + picker.GetPickCount());
  points.reserve(points.size() + picker.GetPickCount() + 1);
  try {
    for (unsigned long i = 0; i != picker.GetPickCount(); ++i) {
      paths.push_back(picker.GetItemPath(i));
      points.push_back(picker.GetAbsHitPoint(i));
    }
  } catch (...) {
    paths.erase(paths.begin() + pathCount, paths.end());
    points.erase(points.begin() + pointCount, points.end());
    throw;
  }
}

void AppendModels(NRayPicker const& picker, std::vector<NSceneGraphModelNode const*>& models) {
  models.reserve(models.size() + picker.GetPickCount());
  for (unsigned long i = 0; i != picker.GetPickCount(); ++i) {
    models.push_back(picker.GetModelNode(i));
  }
}

}  // namespace

bool PickDetail(NSceneNode const& scene, Vec2 const* point, Matrix const* viewProjection,
                std::vector<ModelPath>& paths, std::vector<Vec3>& points) {
  if (point == nullptr || viewProjection == nullptr) return false;
  NRayPicker picker;
  picker.SetRay(*point, *viewProjection);
  if (!Pick(picker, scene)) return false;
  AppendHits(picker, paths, points);
  return true;
}

bool PickDetail(NSceneNode const& scene, Vec2 const* point, Matrix const* viewProjection,
                std::vector<NSceneGraphModelNode const*>& models) {
  if (point == nullptr || viewProjection == nullptr) return false;
  NRayPicker picker;
  picker.SetRay(*point, *viewProjection);
  if (!Pick(picker, scene)) return false;
  AppendModels(picker, models);
  return true;
}

bool PickDetailInArea(NSceneNode const& scene, Vec2 const* point, Matrix const* viewProjection,
                      VX_Math::Box3 const& area, std::vector<ModelPath>& paths,
                      std::vector<Vec3>& points) {
  if (point == nullptr || viewProjection == nullptr) return false;
  NRayPicker picker;
  picker.SetRay(*point, *viewProjection);
  picker.SetSpace(area);
  picker.SetPickInArea(true);
  if (!Pick(picker, scene)) return false;
  AppendHits(picker, paths, points);
  return true;
}

bool PickDetailFromPlane(NSceneNode const& scene, Vec2 const* point, Matrix const* viewProjection,
                         VX_Math::Plane const& plane, std::vector<ModelPath>& paths,
                         std::vector<Vec3>& points) {
  if (point == nullptr || viewProjection == nullptr) return false;
  NRayPicker picker;
  picker.SetRay(*point, *viewProjection);
  picker.SetPlane(plane);
  picker.SetPickFromPlane(true);
  if (!Pick(picker, scene)) return false;
  AppendHits(picker, paths, points);
  points.push_back(picker.GetPlaneHit());
  return true;
}

bool PickModel(domain::scenegraph::item::NSceneGraphItemNode const& item, VX_Math::Line const* line,
               std::vector<NSceneGraphModelNode const*>& models) {
  if (line == nullptr) return false;
  NRayPicker picker;
  picker.SetRay(*line);
  if (!Pick(picker, item)) return false;
  AppendModels(picker, models);
  return true;
}

bool PickDetail(NSceneNode const& scene, std::vector<VX_Math::Line> const& rays,
                std::vector<RayHits>& hits) {
  std::vector<RayHits> made(rays.size());
  bool isAnyHit = false;
  ForEachBundle(rays, [&](std::vector<VX_Math::Line> const& bundle, std::size_t first) {
    NRayPicker picker;
    picker.SetRays(bundle);
    scene.Accept(picker);
    picker.CheckDetail();
    isAnyHit = isAnyHit || picker.GetPickCount() != 0;
    for (unsigned long i = 0; i != picker.GetPickCount(); ++i) {
      RayHits& found = made[first + picker.GetRayIndex(i)];
      found.paths.push_back(picker.GetItemPath(i));
      found.points.push_back(picker.GetAbsHitPoint(i));
    }
  });
  hits.swap(made);
  return isAnyHit;
}

bool HitsAnything(NSceneNode const& scene, VX_Math::Line const& ray) {
  NRayPicker picker;
  picker.SetRay(ray);
  scene.Accept(picker);
  return picker.FindBlocked({std::numeric_limits<double>::infinity()}).front();
}

bool IsVisible(NSceneNode const& scene, Vec3 const& from, Vec3 const& point) {
  return AreVisible(scene, from, {point}).front();
}

std::vector<bool> AreVisible(NSceneNode const& scene, Vec3 const& from,
                             std::vector<Vec3> const& points) {
  constexpr double kBefore = 1 - 1e-5;
  std::vector<VX_Math::Line> rays;
  rays.reserve(points.size());
  for (Vec3 const& point : points) rays.emplace_back(from, point);
  std::vector<bool> areVisible(points.size());
  ForEachBundle(rays, [&](std::vector<VX_Math::Line> const& bundle, std::size_t first) {
    NRayPicker picker;
    picker.SetRays(bundle);
    scene.Accept(picker);
    std::vector<double> distances;
    for (std::size_t i = 0; i != bundle.size(); ++i) {
      distances.push_back(kBefore * static_cast<double>((points[first + i] - from).Length()));
    }
    std::vector<bool> const isBlocked = picker.FindBlocked(distances);
    for (std::size_t i = 0; i != bundle.size(); ++i) areVisible[first + i] = !isBlocked[i];
  });
  return areVisible;
}

NIndexStatistics GetIndexStatistics(domain::geometry::NGeometryNode const& geometry) {
  auto const* const index = detail::NPickIndex::Query(geometry);
  if (index == nullptr || index->GetIndex() == nullptr) return {0, 0};
  return {index->GetIndex()->GetTriangleCount(), index->GetBuildSeconds()};
}

}  // namespace corvanta::data::operators::ray_picker
