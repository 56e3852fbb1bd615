#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>
#include <vector>

#include "corvanta/data/domain/NNodeWatcher.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/Box3.h"
#include "corvanta/vx_math/Line.h"
#include "corvanta/vx_math/MatrixStack.h"
#include "corvanta/vx_math/Plane.h"
#include "corvanta/vx_math/Vec2.h"

namespace corvanta::data::operators::ray_picker {

/// A model whose box the ray meets, and after CheckDetail one that it hits.
struct CORVANTA_API PickRecord {
  /// The parameter along the ray: of the box, after CheckDetail of the nearest triangle. It means
  /// the same in all frames.
  double distance;
  VX_Math::Vec3 origin;  // the ray in the model's own frame
  VX_Math::Vec3 direction;
  VX_Math::Matrix matrix;  // of the model, at the moment of the visit
  VX_Math::Vec3 absHit;    // global; zero until CheckDetail, as is localHit
  VX_Math::Vec3 localHit;  // in the model's own frame
  domain::scenegraph::item::NSceneGraphModelNode const* model;
  /// The references passed on the way to the model, outermost first.
  domain::scenegraph::NCheckPoints checkPoints;
};

/// Finds the models that a ray hits, nearest first, and where. Serves one pick, or one of many
/// rays.
///
/// Set the ray, then the mode; let the picker visit a scene, a tree or an item
/// (`scene.Accept(picker)`); then SortWithDistance, CheckDetail, and read the results. Hidden
/// models and groups are skipped with all below them; a hidden reference isn't. A root stands
/// for its children alone. Nothing below a camera or light item is reached.
///
/// Raises: reading trees and geometries may subscribe late.
/// Fails: a visit throws NSceneGraphWalkError beyond the budget of scenegraph/walk_budget.h; then,
/// and when a listener throws, the picker is as it was before the visit.
/// Cost: boxes prune the walk; the triangles of a mesh that is picked often are indexed.
class CORVANTA_API NRayPicker : public domain::NNodeWatcher {
 public:
  NRayPicker();
  NRayPicker(NRayPicker const&) = delete;
  NRayPicker& operator=(NRayPicker const&) = delete;
  virtual ~NRayPicker();

  /// The ray through a point of the view.
  /// Units: `point` in the unit square, y upwards; depth from 0 at the near plane to 1 at the far
  /// one.
  void SetRay(VX_Math::Vec2 const& point, VX_Math::Matrix const& viewProjection);
  void SetRay(VX_Math::Line const& line);
  /// Many rays at once: what one finds is what it would find alone.
  /// Cost: each item is entered once for all rays that meet it.
  void SetRays(std::vector<VX_Math::Line> const& lines);
  /// Stored, and read by no test.
  void SetClip(VX_Math::Vec2 const& clip);
  /// With SetPickInArea, hits count only inside this global box.
  void SetSpace(VX_Math::Box3 const& space);
  /// With SetPickFromPlane, hits count only beyond where the ray meets this global plane; none does
  /// if it doesn't. Set the ray first.
  void SetPlane(VX_Math::Plane const& plane);
  /// In-area wins where both are set.
  void SetPickInArea(bool isInArea);
  void SetPickFromPlane(bool isFromPlane);

  /// Sorts the records by ray, then by distance, ascending, and drops those that were found to
  /// miss. Equal distances stay in the order of the walk.
  void SortWithDistance();
  /// Tests the triangles of the records' models and keeps what is hit, sorted.
  void CheckDetail();
  /// In place of CheckDetail: whether some triangle crosses a ray between its origin and its
  /// distance, for each ray. The modes don't count.
  /// Requires: a distance a ray; visited once.
  /// Cost: the nearest boxes are tested first, and for a ray none after the first such triangle.
  std::vector<bool> FindBlocked(std::vector<double> const& distances);
  /// Writes the names of the records' models to the platform's debug channel.
  void DebugOutPut() const;

  unsigned long GetPickCount() const;
  /// Requires: `index` below GetPickCount, as in the next six.
  domain::scenegraph::item::NSceneGraphModelNode const* GetModelNode(unsigned long index) const;
  /// Fails: an empty path if no tree was visited through a scene; see GetCheckPoints.
  domain::scenegraph::NSceneGraphPath<domain::scenegraph::item::NSceneGraphModelNode> const
  GetItemPath(unsigned long index) const;
  /// The references passed on the way to the model, outermost first; also where the walk started
  /// at a tree or an item.
  domain::scenegraph::NCheckPoints const& GetCheckPoints(unsigned long index) const;
  /// The ray that the record belongs to, from 0 in the order given.
  unsigned long GetRayIndex(unsigned long index) const;
  /// See PickRecord::distance.
  double GetDistance(unsigned long index) const;
  VX_Math::Vec3 GetAbsHitPoint(unsigned long index) const;
  VX_Math::Vec3 GetLocalHitPoint(unsigned long index) const;
  /// Where the first ray met the plane at the last SetPlane at which it did, between the points
  /// that SetRay took it from and to; (0, 0, 0) before that. A plane that it misses changes nothing
  /// here.
  VX_Math::Vec3 const& GetPlaneHit() const;

 private:
  class Walk;
  struct State;

#define CORVANTA_KIND(SPACE, CLASS) void VisitImpl(domain::SPACE::CLASS const& node) override;
#include "corvanta/data/domain/node_kinds.def"

  bool QueryIntersectionBox(VX_Math::Vec3 const& origin, VX_Math::Vec3 const& direction,
                            VX_Math::Box3 const& box, double& distance) const;
  bool QueryIntersectionGeometry(
      VX_Math::Vec3 const& origin, VX_Math::Vec3 const& direction, VX_Math::Matrix const& matrix,
      boost::intrusive_ptr<domain::geometry::NGeometryNode> const& geometry,
      double& distance) const;

  std::unique_ptr<State> const m_state;
};

}  // namespace corvanta::data::operators::ray_picker
