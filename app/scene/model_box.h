#pragma once

#include "app/scene/NOverview.h"
#include "corvanta/vx_math/Box3.h"

namespace corvanta::app {

/// The box of the models that are seen, from the boxes of their own geometries. The box of a tree
/// is made of boxes of boxes, which grow with each level that is turned.
/// Units: global.
/// Fails: the box of the tree, where this one is empty or isn't finite.
/// Cost: the global transform of each model's path.
VX_Math::Box3 GetModelBox(NOverview::Tree const& tree);

}  // namespace corvanta::app
