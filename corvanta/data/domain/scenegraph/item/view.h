#pragma once

#include <utility>

#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/Box3.h"
#include "corvanta/vx_math/Matrix.h"

/// Views and clip distances of a camera item. Right-handed, row vectors, single precision. Whatever
/// the path's GetGlobalTransform throws passes through.
namespace corvanta::data::domain::scenegraph::item {

/// From global coordinates to those of the camera, which looks along negative z. With a perspective
/// camera node the line of sight is tilted by its angles; with any camera node the view is shifted
/// by the stereo shift.
/// Fails: the identity for a path without a camera item.
CORVANTA_API VX_Math::Matrix GetViewMatrix(NSceneGraphPath<NSceneGraphCameraNode> const& camera);

/// The view of one eye of a head-mounted display: the head's forward direction is turned about y
/// towards the interest, then `headPose` and `eyeOffset` apply. No tilt and no stereo shift.
/// Fails: the identity for a path without a camera item.
CORVANTA_API VX_Math::Matrix GetViewMatrixHMD(NSceneGraphPath<NSceneGraphCameraNode> const& camera,
                                              VX_Math::Matrix const& headPose,
                                              VX_Math::Vec3 const& eyeOffset);

/// From the camera's position to its interest, global.
/// Fails: (0, 0, 0) for a path without a camera item.
CORVANTA_API VX_Math::Vec3 GetFocalVec(NSceneGraphPath<NSceneGraphCameraNode> const& camera);
CORVANTA_API double GetFocalLength(NSceneGraphPath<NSceneGraphCameraNode> const& camera);

/// The near and far distances that take in `tree`.
CORVANTA_API std::pair<double, double> GetClipDistances(
    NSceneGraphPath<NSceneGraphCameraNode> const& camera, tree::NSceneGraphTreeNode const& tree);
/// The near and far distances that take in a global box; an empty one counts as (-1, -1, -1) to
/// (1, 1, 1).
CORVANTA_API std::pair<double, double> GetClipDistances(
    NSceneGraphPath<NSceneGraphCameraNode> const& camera, VX_Math::Box3 const& box);

/// The translation that puts the camera item of `target` where that of `source` stands.
/// Fails: leaves `translation` alone if `target` has no camera item.
CORVANTA_API void GetSceneGraphCameraTranslationCopyData(
    NSceneGraphPath<NSceneGraphCameraNode> const& source,
    NSceneGraphPath<NSceneGraphCameraNode> const& target, double (&translation)[3]);

}  // namespace corvanta::data::domain::scenegraph::item
