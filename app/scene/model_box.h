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

/// The points of the models that are seen that lie farthest in each of `directions`. Vertices that
/// aren't finite are left out.
/// Units: global. Fails: empty where nothing is seen.
/// Cost: linear in the vertices of up to four million; beyond, the boxes' corners stand for them.
std::vector<VX_Math::Vec3> GetModelExtremes(NOverview::Tree const& tree,
                                            std::vector<VX_Math::Vec3> const& directions);

}  // namespace corvanta::app
