#pragma once

#include "corvanta/export.h"
#include "corvanta/renderer/NEye.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::renderer {

/// How a model turns towards the camera; the importer or user stores it as its billboard type.
enum NBillboard : long {
  NB_NONE = 0,
  NB_FACING = 1,   ///< its z axis points at the viewer, its y axis upwards in the picture
  NB_UPRIGHT = 2,  ///< it turns about its own y axis alone; any other value does as this
};

/// `global` turned that way about its own origin, with its own size.
CORVANTA_API VX_Math::Matrix TurnBillboard(VX_Math::Matrix const& global, NEye const& eye,
                                           long type);

}  // namespace corvanta::renderer
