#pragma once

#include <utility>

#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/export.h"

namespace corvanta::data::view {
class NView;
}

namespace corvanta::data::domain::scenegraph::item {

/// The near and far distances that take in all that `view` shows: the scene's tree, the model of
/// its environment, as far below the floor as above it and a twentieth larger, and the postures of
/// the camera item's domain manager. An environment model without a box adds nothing.
/// Raises: the late signals of the tree hosts that it reads.
/// Fails: (0, 0) for a view without a scene, tree, environment or environment model. Throws what
/// the path's GetGlobalTransform throws.
CORVANTA_API std::pair<double, double> GetClipDistances(
    NSceneGraphPath<NSceneGraphCameraNode> const& camera, data::view::NView const& view);

}  // namespace corvanta::data::domain::scenegraph::item
