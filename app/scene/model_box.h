#pragma once

#include <vector>

#include "app/scene/NOverview.h"
#include "corvanta/vx_math/Box3.h"

namespace corvanta::app {

/// The box of the models that are seen, from the boxes of their own geometries. The box of a tree
/// is made of boxes of boxes, which grow with each level that is turned.
/// Units: global.
/// Fails: the box of the tree, where this one is empty or isn't finite.
/// Cost: the global transform of each model's path.
VX_Math::Box3 GetModelBox(NOverview::Tree const& tree);

/// How far the models that are seen reach from the origin in each of `directions`: the greatest
/// product with one of their points. Vertices that aren't finite are left out.
/// Units: global; minus infinity where no model is seen.
/// Cost: linear in the vertices of up to four million; beyond, the boxes' corners stand for them.
std::vector<float> GetModelReach(NOverview::Tree const& tree,
                                 std::vector<VX_Math::Vec3> const& directions);

}  // namespace corvanta::app
