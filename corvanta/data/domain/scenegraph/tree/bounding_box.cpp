#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"

#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"

namespace corvanta::data::domain::scenegraph::tree {

VX_Math::Box3 GetBoundingBox(NSceneGraphTreeNode const& tree) {
  auto const held = core::reference_countable::Hold(tree);
  auto const root = tree.GetRoot();
  if (!root) return {};
  VX_Math::Matrix const& control = tree.GetControlTransform();
  VX_Math::Matrix const global = root->GetTransform() * control;
  VX_Math::Box3 box = root->GetBoundingBox(global, control);
  box.Transform(global);
  return box;
}

}  // namespace corvanta::data::domain::scenegraph::tree
