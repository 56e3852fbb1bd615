#pragma once

#include "corvanta/export.h"
#include "corvanta/renderer/NViewpoint.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::renderer {

/// How a model turns towards the camera. A model's billboard type of the same value stands for
/// each; every other value but 0 does as NB_UPRIGHT.
enum NBillboard : long {
  NB_NONE = 0,
  NB_FACING = 1,   ///< its z axis points at the camera, its y axis upwards in the picture
  NB_UPRIGHT = 2,  ///< it turns about its own y axis alone
};

/// `global` turned that way about its own origin, with its scale.
/// Requires: `type` isn't NB_NONE.
CORVANTA_API VX_Math::Matrix TurnBillboard(VX_Math::Matrix const& global,
                                           NViewpoint const& viewpoint, NBillboard type);

}  // namespace corvanta::renderer
