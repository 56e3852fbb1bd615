#pragma once

#include <cstddef>
#include <functional>

#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/vx_math/Box3.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::app {

/// An item met on a walk through its tree.
struct NVisit {
  data::domain::scenegraph::item::NSceneGraphItemNode& item;
  data::domain::scenegraph::item::NSceneGraphItemNode const* parent;  // null for the root
  std::size_t depth;                                                  // 0 for the root
  VX_Math::Matrix global;
  VX_Math::Box3 box;  // of all below the item too, in global coordinates
};

/// Shows each item of `tree` to `visit`, parents before children, children in order.
/// Cost: linear in the items, however deep they stand; no recursion.
void WalkTree(data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
              std::function<void(NVisit const&)> const& visit);

}  // namespace corvanta::app
