#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"

#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/core/string_table/string_table.h"

namespace corvanta::data::domain::scenegraph::item {

using VX_Math::Box3;
using VX_Math::Matrix;

NSceneGraphReferenceNode::NSceneGraphReferenceNode(
    core::node::NNodeID const& id, core::domain::NDomainBase* domain,
    events::attribute_change::NMultiplexer const* multiplexer)
    : NSceneGraphItemNode(id, domain, multiplexer,
                          core::string_table::GetString(core::string_table::DATA_REFERENCE)) {}

NSceneGraphReferenceNode::~NSceneGraphReferenceNode() = default;

void NSceneGraphReferenceNode::VerifyReference() const {
  if (auto const tree = GetSceneGraph()) {
    if (auto const root = tree->GetRoot()) root->AddReferrer(*this);
  }
}

void NSceneGraphReferenceNode::CalculateBoundingBox(Box3& box, Matrix const& accumulated,
                                                    Matrix const& base) const {
  NSceneGraphItemNode::CalculateBoundingBox(box, accumulated, base);
  auto const tree = GetSceneGraph();
  auto const root = tree ? tree->GetRoot() : nullptr;
  if (!root) return;
  Matrix const control = tree->GetControlTransform();
  Matrix const shown = root->GetTransform() * control;
  Box3 rootBox;
  if (root->TransformIsAbsolute()) {
    rootBox = root->GetBoundingBox(shown, control);
    rootBox.Transform(shown * accumulated.Inverse());
  } else {
    Matrix const toHere = shown * base.Inverse();
    rootBox = root->GetBoundingBox(toHere * accumulated, control);
    rootBox.Transform(toHere);
  }
  box.ExtendBy(rootBox);
  root->AddReferrer(*this);
}

wchar_t const* NSceneGraphReferenceNode::GetSceneGraphItemTypeImpl() const {
  return SGIT_REFERENCE;
}

void NSceneGraphReferenceNode::OnRootChangeImpl(
    boost::intrusive_ptr<NSceneGraphItemNode> const& oldRoot) {
  // The old root forgets this reference also when a listener throws.
  core::detail::ScopeExit const forget([this, &oldRoot] {
    if (oldRoot) oldRoot->RemoveReferrer(*this);
  });
  NSceneGraphTreeHost::OnRootChangeImpl(oldRoot);
}

void NSceneGraphReferenceNode::OnControlTransformChangeImpl() { DirtyBoundingBox(); }

void NSceneGraphReferenceNode::OnSceneGraphTreeChange(
    boost::intrusive_ptr<tree::NSceneGraphTreeNode> const& oldTree) {
  auto const oldRoot = oldTree ? oldTree->GetRoot() : nullptr;
  try {
    NSceneGraphTreeHost::OnSceneGraphTreeChange(oldTree);
  } catch (...) {
    if (oldRoot) oldRoot->RemoveReferrer(*this);
    throw;
  }
  OnRootChangeImpl(oldTree ? oldTree->GetRoot() : nullptr);
}

}  // namespace corvanta::data::domain::scenegraph::item
