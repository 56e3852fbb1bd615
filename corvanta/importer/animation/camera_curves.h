#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/export.h"
#include "corvanta/importer/animation/NEffort.h"
#include "corvanta/importer/animation/item_curves.h"
#include "corvanta/vx_math/Vec3.h"

namespace corvanta::importer {

/// A camera item and where it looks in the frame of its item.
struct NMovableCamera {
  boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphCameraNode> item;
  VX_Math::Vec3 ahead;
  VX_Math::Vec3 up;
};

/// Binds curves for interest and up to `animation` if a curve moves the camera or what stands above
/// it: both are global, and don't follow by themselves. The interest keeps its distance. Straight
/// lines between the keys stray from the way by at most 0.0005 of it.
/// Requires: the camera is in `tree`.
/// Fails: throws NImportError for more keys or transforms than `effort` allows.
CORVANTA_API void AddCameraCurves(data::domain::animation::NAnimationNode& animation,
                                  data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
                                  NMovableCamera const& camera, NCurvesByItem& curves,
                                  NEffort& effort);

}  // namespace corvanta::importer
