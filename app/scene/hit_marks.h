#pragma once

#include <vector>

#include "app/scene/NStage.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/vx_math/Vec3.h"

namespace corvanta::app {

/// Puts a red ball at the first of the points, yellow ones at the others, and a rod from `from`, if
/// that isn't null, to the last.
/// Units: global.
/// Requires: the stage's tree has the identity as its control transform.
void MarkHits(data::document::NDocument& document, NStage& stage,
              std::vector<VX_Math::Vec3> const& points, VX_Math::Vec3 const* from);

}  // namespace corvanta::app
