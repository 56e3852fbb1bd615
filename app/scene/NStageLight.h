#pragma once

#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/vx_math/Box3.h"
#include "corvanta/vx_math/Vec3.h"

namespace corvanta::app {

/// The light of an environment on a white ball that stands for the models.
struct NStageLight {
  double brightest = 0;  ///< where most arrives, the ambient light with it; 1 is shown as white
  double darkShare = 0;  ///< of what is seen of it, what the lamps leave nearly black; 0 to 1
};

/// Measures what the lamps and the ambient light of `environment` do to the ball around `box`, seen
/// along `sight`. What stands in the way of a lamp counts for nothing.
/// Requires: `box` is finite and not empty.
NStageLight MeasureLight(data::domain::environment::NEnvironmentNode const& environment,
                         VX_Math::Box3 const& box, VX_Math::Vec3 const& sight);

}  // namespace corvanta::app
