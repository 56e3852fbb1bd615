#include "corvanta/core/domain/NDomainBase.h"

#include <limits>

#include "corvanta/core/domain/NDomainManager.h"

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

bool NDomainBase::AddNode(NNode& node) {
  return Enter(node, std::numeric_limits<unsigned int>::max());
}

bool NDomainBase::AddNode(NNode& node, unsigned int position) { return Enter(node, position); }

bool NDomainBase::Enter(NNode& node, unsigned int position) {
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
  NNode* before = nullptr;
  if (position < m_nodeCount) {
    before = m_first;
    while (position-- != 0) before = before->m_next;
  }
  Link(node, before);
  node.m_isInDomain = true;
  node.m_isSealed = false;
  node.m_domain = m_link;
  return true;
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
  Unlink(node);  // which may end the node, and with it whatever it held
  return true;
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

}  // namespace corvanta::core::domain
