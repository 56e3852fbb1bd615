#pragma once

#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/Box3.h"

namespace corvanta::data::domain::scenegraph::tree {

/// The box of all that the tree shows, in global coordinates.
/// Fails: an empty box for a tree without a root.
CORVANTA_API VX_Math::Box3 GetBoundingBox(NSceneGraphTreeNode const& tree);

}  // namespace corvanta::data::domain::scenegraph::tree
