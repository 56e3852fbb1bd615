#include "corvanta/core/domain/NDomainBase.h"

#include "corvanta/core/detail/NChangeRecorder.h"
#include "corvanta/core/domain/NDomainListener.h"
#include "corvanta/core/domain/NDomainManager.h"
#include "corvanta/core/reference_countable/hold.h"

namespace corvanta::core::domain {

using node::NNode;

NDomainBase::NDomainBase(NDomainManager const* manager, std::wstring const& name)
    : NNamedObject(name),
      m_manager(manager == nullptr ? nullptr : manager->GetLink()),
      m_link(new detail::NLink<NDomainBase>(this)) {}

NDomainBase::~NDomainBase() {
  ReleaseNodes();
  m_link->owner = nullptr;
}

NDomainManager const* NDomainBase::GetManager() const noexcept {
  return m_manager ? m_manager->owner : nullptr;
}

bool NDomainBase::AddNode(NNode& node) { return Enter(node, nullptr); }

bool NDomainBase::AddNode(NNode& node, unsigned int position) {
  NNode* before = nullptr;
  if (position < m_nodeCount) {
    before = m_first;
    while (position-- != 0) before = before->m_next;
  }
  return Enter(node, before);
}

bool NDomainBase::AddNodeBefore(NNode& node, NNode* next) {
  bool const isHere = next == nullptr || (next->m_isInDomain && next->GetDomain() == this);
  return isHere && Enter(node, next);
}

bool NDomainBase::Enter(NNode& node, NNode* before) {
  NDomainBase const* const domain = node.GetDomain();
  if (node.m_isInDomain || (domain != nullptr && domain != this)) return false;
  if (m_ids.Find(node.m_id) != nullptr) return false;
  m_ids.Insert(node);
  // The node isn't counted before it is in, so that a refusal doesn't destroy it.
  bool isNamed = false;
  try {
    isNamed = AddToNamespace(node);
  } catch (...) {
    m_ids.Remove(node);
    throw;
  }
  if (!isNamed) {
    m_ids.Remove(node);
    return false;
  }
  Link(node, before);
  node.m_isInDomain = true;
  node.m_isSealed = false;
  node.m_domain = m_link;
  if (m_recorder != nullptr || !m_listeners.IsEmpty()) SignalAdded(node);
  return true;
}

void NDomainBase::SignalAdded(NNode& node) {
  auto const held = reference_countable::Hold(*this);
  boost::intrusive_ptr<NNode> const heldNode(&node);
  core::detail::NChangeScope const change(m_recorder);
  if (m_recorder != nullptr) m_recorder->OnAddNode(*this, node, node.m_next);
  m_listeners.Deliver<NDomainListener>(
      [&](NDomainListener& listener) { listener.SignalNodeAdded(*this, node); });
}

void NDomainBase::Link(NNode& node, NNode* before) noexcept {
  intrusive_ptr_add_ref(&node);
  node.m_next = before;
  node.m_previous = before == nullptr ? m_last : before->m_previous;
  (node.m_previous == nullptr ? m_first : node.m_previous->m_next) = &node;
  (before == nullptr ? m_last : before->m_previous) = &node;
  ++m_nodeCount;
}

/// Hands over the count that the order held.
boost::intrusive_ptr<NNode> NDomainBase::Unlink(NNode& node) noexcept {
  (node.m_previous == nullptr ? m_first : node.m_previous->m_next) = node.m_next;
  (node.m_next == nullptr ? m_last : node.m_next->m_previous) = node.m_previous;
  node.m_previous = nullptr;
  node.m_next = nullptr;
  --m_nodeCount;
  return {&node, false};
}

bool NDomainBase::RemoveNode(NNode& node) {
  if (!node.m_isInDomain || node.GetDomain() != this || node.m_isSealed) return false;
  m_ids.Remove(node);
  RemoveFromNamespace(node);
  node.m_isInDomain = false;
  node.m_domain.reset();
  NNode* const next = node.m_next;
  // Its end may end the node, and with it whatever that held.
  boost::intrusive_ptr<NNode> const removed = Unlink(node);
  if (m_recorder != nullptr || !m_listeners.IsEmpty()) SignalRemoved(node, next);
  return true;
}

void NDomainBase::SignalRemoved(NNode& node, NNode* next) {
  auto const held = reference_countable::Hold(*this);
  boost::intrusive_ptr<NNode> const heldNext(next);
  core::detail::NChangeScope const change(m_recorder);
  if (m_recorder != nullptr) m_recorder->OnRemoveNode(*this, node, next);
  m_listeners.Deliver<NDomainListener>(
      [&](NDomainListener& listener) { listener.SignalNodeRemoved(*this, node, next); });
}

bool NDomainBase::AddDomainListener(NDomainListener& listener) {
  return m_listeners.AddObserver(listener, &listener);
}

bool NDomainBase::RemoveDomainListener(NDomainListener& listener) noexcept {
  return m_listeners.RemoveObserver(listener);
}

boost::intrusive_ptr<NNode> NDomainBase::QueryNode(node::NNodeID const& id) const {
  return m_ids.Find(id);
}

void NDomainBase::SetIsReadOnlyFlag(bool isReadOnly) {
  for (NNode* node = m_first; node != nullptr; node = node->m_next) node->m_isSealed = isReadOnly;
  m_isReadOnly = isReadOnly;
}

void NDomainBase::ReleaseNodes() noexcept {
  m_ids.Clear();
  for (NNode* node = m_first; node != nullptr; node = node->m_next) node->m_isInDomain = false;
  // One at a time: a node's destructor may ask for the domain and its manager.
  while (m_first != nullptr) Unlink(*m_first);
}

NDomainListener::~NDomainListener() = default;

}  // namespace corvanta::core::domain

namespace corvanta::core::detail {

NChangeRecorder::~NChangeRecorder() = default;

}  // namespace corvanta::core::detail
