#pragma once

#include <array>

#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::renderer {

using NCameraPath = data::domain::scenegraph::NSceneGraphPath<
    data::domain::scenegraph::item::NSceneGraphCameraNode>;

/// The near and the far clip plane.
/// Units: scene units ahead of the camera.
struct NClipDistances {
  double near = 0;
  double far = 0;
};

/// What a picture is seen from: the matrices and the exposure of a camera at one moment. It is
/// plain data that no later change of the camera alters.
struct CORVANTA_API NViewpoint {
  VX_Math::Matrix view;             ///< from global coordinates to those of the camera
  VX_Math::Matrix projection;       ///< depth from 0 at the near plane to 1 at the far one
  std::array<float, 4> position{};  ///< homogeneous: w is 0 for the direction to a parallel camera
  float exposure = 1.0f;            ///< a factor of the light
  float gamma = 1.0f;

  VX_Math::Matrix GetViewProjection() const { return view * projection; }
  /// The same with depth from 1 at the near plane to 0 at the far one. Floats lie closest about 0,
  /// so that a depth buffer of floats separates what is far away as well as what is near.
  VX_Math::Matrix GetReversedDepthViewProjection() const;
};

/// Which part of a stereo pair a picture is.
enum NStereoSide : int { NSS_LEFT = -1, NSS_BOTH = 0, NSS_RIGHT = 1 };

/// The viewpoint of a camera. The two of a stereo pair are a thirtieth of the distance to the
/// camera's interest apart, and view and projection are shifted so that the interest has no
/// parallax.
/// Units: `aspect` is width by height.
/// Fails: throws what the path's GetGlobalTransform does.
CORVANTA_API NViewpoint GetViewpoint(NCameraPath const& camera, double aspect,
                                     NClipDistances const& clip, NStereoSide side = NSS_BOTH);
/// The viewpoint of one side of a head-mounted display, whose head looks at the camera's interest:
/// 90 degrees high, the axes turned outwards, so that each sees more of its own side.
/// Units: `aspect` is width by height.
/// Fails: throws what the path's GetGlobalTransform does.
CORVANTA_API NViewpoint GetHeadMountedViewpoint(NCameraPath const& camera, double aspect,
                                                NClipDistances const& clip, NStereoSide side);

}  // namespace corvanta::renderer
