#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"

#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/scenegraph/item/detail/shown_root.h"

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
  auto const held = core::reference_countable::Hold(*this);
  if (auto const tree = GetSceneGraph()) {
    if (auto const root = tree->GetRoot()) root->AddReferrer(*this);
  }
}

detail::ShownRoot detail::FindShownRoot(NSceneGraphReferenceNode const& reference,
                                        Matrix const& accumulated, Matrix const& base) {
  ShownRoot shown;
  auto const tree = reference.GetSceneGraph();
  if (tree) shown.item = tree->GetRoot();
  if (!shown.item) return shown;
  shown.base = tree->GetControlTransform();
  Matrix const local = shown.item->GetTransform() * shown.base;
  if (shown.item->TransformIsAbsolute()) {
    shown.accumulated = local;
    shown.toReference = local * accumulated.Inverse();
  } else {
    shown.toReference = local * base.Inverse();
    shown.accumulated = shown.toReference * accumulated;
  }
  return shown;
}

void NSceneGraphReferenceNode::CalculateBoundingBox(Box3& box, Matrix const& accumulated,
                                                    Matrix const& base) const {
  NSceneGraphItemNode::CalculateBoundingBox(box, accumulated, base);
  detail::ShownRoot const shown = detail::FindShownRoot(*this, accumulated, base);
  if (!shown.item) return;
  Box3 rootBox = shown.item->GetBoundingBox(shown.accumulated, shown.base);
  rootBox.Transform(shown.toReference);
  box.ExtendBy(rootBox);
  shown.item->AddReferrer(*this);
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
  // Also when a listener throws, or gives the old tree another root.
  core::detail::ScopeExit const forget([this, &oldRoot] {
    if (oldRoot) oldRoot->RemoveReferrer(*this);
  });
  NSceneGraphTreeHost::OnSceneGraphTreeChange(oldTree);
  OnRootChangeImpl(oldTree ? oldTree->GetRoot() : nullptr);
}

}  // namespace corvanta::data::domain::scenegraph::item
