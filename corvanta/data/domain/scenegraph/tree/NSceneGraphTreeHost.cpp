#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeHost.h"

#include <utility>

#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/data/events/detail/NModelRecorder.h"

namespace corvanta::data::domain::scenegraph::tree {

using core::node::NNodeReference;

NSceneGraphTreeHost::NSceneGraphTreeHost() = default;
NSceneGraphTreeHost::~NSceneGraphTreeHost() = default;

boost::intrusive_ptr<NSceneGraphTreeNode> NSceneGraphTreeHost::GetSceneGraph() const {
  auto tree = m_tree.Get();
  if (!tree) return nullptr;
  auto& self = const_cast<NSceneGraphTreeHost&>(*this);
  if (!tree->AddObserver(static_cast<NSceneGraphTreeListener&>(self))) return tree;
  auto const held = core::reference_countable::Hold(self);
  self.OnSceneGraphTreeChange(nullptr);
  self.OnRootChangeImpl(tree->GetRoot());
  return GetSceneGraph();  // a handler may have set another one
}

NNodeReference<NSceneGraphTreeNode> const& NSceneGraphTreeHost::GetSceneGraphRef() const {
  return m_tree;
}

void NSceneGraphTreeHost::SetSceneGraph(NNodeReference<NSceneGraphTreeNode> const& tree) {
  auto const held = core::reference_countable::Hold(*this);
  NNodeReference<NSceneGraphTreeNode> const given = tree;  // it may be this host's own
  auto const oldTree = GetSceneGraph();
  auto const newTree = given.Get();
  // First what may fail.
  if (newTree) newTree->AddObserver(static_cast<NSceneGraphTreeListener&>(*this));
  if (oldTree && oldTree != newTree) {
    oldTree->RemoveObserver(static_cast<NSceneGraphTreeListener&>(*this));
  }
  auto const previous = std::exchange(m_tree, given);
  auto* const node = dynamic_cast<NNode*>(this);
  auto* const recorder = node == nullptr ? nullptr : node->GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) recorder->OnReference(*node, events::NRK_TREE, previous, given);
  OnSceneGraphTreeChange(oldTree);
}

NSceneGraphTreeHost::Introduction::Introduction(NSceneGraphTreeHost& host,
                                                NNodeReference<NSceneGraphTreeNode> const& tree)
    : m_host(host), m_tree(tree) {
  auto const node = host.m_tree == tree ? nullptr : tree.Get();
  m_isNew = node && node->AddObserver(static_cast<NSceneGraphTreeListener&>(host));
}

NSceneGraphTreeHost::Introduction::~Introduction() {
  auto const node = m_isNew && m_host.m_tree != m_tree ? m_tree.Get() : nullptr;
  if (node) node->RemoveObserver(static_cast<NSceneGraphTreeListener&>(m_host));
}

void NSceneGraphTreeHost::OnRootChangeImpl(
    boost::intrusive_ptr<item::NSceneGraphItemNode> const& oldRoot) {
  auto const tree = GetSceneGraph();
  if (!tree) return;
  NotifyObservers(
      [&](auto& listener) { listener.SignalSceneGraphTreeRootChange(*this, *tree, oldRoot); });
}

void NSceneGraphTreeHost::OnControlTransformChangeImpl() {}

void NSceneGraphTreeHost::OnSceneGraphTreeChange(
    boost::intrusive_ptr<NSceneGraphTreeNode> const& oldTree) {
  NotifyObservers([&](auto& listener) { listener.SignalSceneGraphTreeChange(*this, oldTree); });
}

}  // namespace corvanta::data::domain::scenegraph::tree
