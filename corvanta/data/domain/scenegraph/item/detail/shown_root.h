#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/fwd.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::data::domain::scenegraph::item::detail {

/// The root of the tree that a reference shows, with the matrices that its box is computed with.
struct ShownRoot {
  boost::intrusive_ptr<NSceneGraphItemNode>
      item;                     // null without a tree or a root; nothing else then
  VX_Math::Matrix accumulated;  // the root's global matrix
  VX_Math::Matrix base;         // the control transform of its tree
  VX_Math::Matrix toReference;  // from the root's frame to the reference's
};

/// Units: `accumulated` is the reference's global matrix, `base` the control transform of its tree.
/// Raises: reading the tree may subscribe late.
ShownRoot FindShownRoot(NSceneGraphReferenceNode const& reference,
                        VX_Math::Matrix const& accumulated, VX_Math::Matrix const& base);

}  // namespace corvanta::data::domain::scenegraph::item::detail
