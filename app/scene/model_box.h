#pragma once

#include <vector>

#include "app/scene/NOverview.h"
#include "corvanta/vx_math/Box3.h"

namespace corvanta::app {

/// How far the models that are seen reach.
/// Units: global.
struct NModelExtent {
  /// From the boxes of the models' own geometries: the box of a tree is made of boxes of boxes,
  /// which grow with each level that is turned. That one, where this is empty or isn't finite.
  VX_Math::Box3 box;
  /// The points that lie farthest in each of the directions; empty where nothing is seen. Vertices
  /// that aren't finite are left out.
  std::vector<VX_Math::Vec3> extremes;
};

/// Cost: the global transform of each model's path, and linear in the vertices of up to four
/// million; beyond, the boxes' corners stand for them.
NModelExtent GetModelExtent(NOverview::Tree const& tree,
                            std::vector<VX_Math::Vec3> const& directions);

}  // namespace corvanta::app
