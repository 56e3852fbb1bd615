#pragma once

#include <array>

#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/vx_math/Matrix.h"
#include "corvanta/vx_math/Vec3.h"

namespace corvanta::renderer {

using NCameraPath = data::domain::scenegraph::NSceneGraphPath<
    data::domain::scenegraph::item::NSceneGraphCameraNode>;

/// The distances between which something is seen.
struct NClip {
  double near = 0;
  double far = 0;
};

/// What a picture is drawn through.
struct CORVANTA_API NEye {
  VX_Math::Matrix view;            // from global coordinates to those of the camera
  VX_Math::Matrix projection;      // depth from 0 at the near plane to 1 at the far one
  std::array<float, 4> towards{};  // its place, with 1 behind; or the direction to it, with 0
  float exposure = 1.0f;           // of the lens
  float gamma = 1.0f;

  VX_Math::Matrix GetViewProjection() const { return view * projection; }
  /// What is drawn by: the depth runs from 1 at the near plane to 0 at the far one. Floats lie
  /// closest about 0, so that a depth buffer of floats tells what is far away apart as well as what
  /// is near.
  VX_Math::Matrix GetDrawnViewProjection() const;
};

/// Which eye a picture is for.
enum NEyeSide : int { NES_LEFT = -1, NES_BOTH = 0, NES_RIGHT = 1 };

/// The eye of a camera. Units: `aspect` is width by height.
/// A left or right eye shifts the view and the projection so that what stands at the camera's
/// interest stays in its place; the eyes stand a thirtieth of that distance apart.
/// Fails: throws what the path's GetGlobalTransform does.
CORVANTA_API NEye GetEye(NCameraPath const& camera, double aspect, NClip const& clip,
                         NEyeSide side = NES_BOTH);
/// An eye of a head-mounted display, whose head looks at the camera's interest: 90 degrees high,
/// the eyes' axes turned outwards, so that each sees more of its own side.
CORVANTA_API NEye GetHeadMountedEye(NCameraPath const& camera, double aspect, NClip const& clip,
                                    NEyeSide side);

}  // namespace corvanta::renderer
