#include "corvanta/core/domain/NDomainBase.h"

#include <utility>

#include "corvanta/core/domain/NDomainManager.h"

namespace corvanta::core::domain {

using node::NNode;

NDomainBase::NDomainBase(NDomainManager const* manager, std::wstring const& name)
    : NNamedObject(name),
      m_manager(manager == nullptr ? nullptr : manager->GetLink()),
      m_link(new detail::NLink<NDomainBase>(this)) {}

NDomainBase::~NDomainBase() {
  for (auto const& node : m_nodes) node->m_isInDomain = false;
  m_link->owner = nullptr;
}

NDomainManager const* NDomainBase::GetManager() const noexcept {
  return m_manager ? m_manager->owner : nullptr;
}

bool NDomainBase::AddNode(NNode& node) { return Enter(node, m_nodes.end()); }

bool NDomainBase::AddNode(NNode& node, unsigned int position) {
  auto const before =
      position < m_nodes.size() ? std::next(m_nodes.begin(), position) : m_nodes.end();
  return Enter(node, before);
}

bool NDomainBase::Enter(NNode& node, Nodes::iterator before) {
  NDomainBase const* const domain = node.GetDomain();
  if (node.m_isInDomain || (domain != nullptr && domain != this)) return false;
  auto const [id, isNew] = m_ids.insert(&node);
  if (!isNew) return false;
  Nodes entry;
  try {
    // Made by hand: the node isn't counted before it is in, so that a refusal doesn't destroy it.
    entry.emplace_back();
    if (!AddToNamespace(node)) {
      m_ids.erase(id);
      return false;
    }
  } catch (...) {
    m_ids.erase(id);
    throw;
  }
  entry.front().reset(&node);
  node.m_place = entry.begin();
  m_nodes.splice(before, entry);
  node.m_isInDomain = true;
  node.m_domain = m_link;
  return true;
}

bool NDomainBase::RemoveNode(NNode& node) {
  if (!node.m_isInDomain || node.GetDomain() != this || node.m_isSealed) return false;
  boost::intrusive_ptr<NNode> const held(&node);
  m_ids.erase(m_ids.find(&node));
  RemoveFromNamespace(node);
  m_nodes.erase(node.m_place);
  node.m_isInDomain = false;
  node.m_domain.reset();
  return true;
}

boost::intrusive_ptr<NNode> NDomainBase::QueryNode(node::NNodeID const& id) const {
  auto const found = m_ids.find(id);
  return found == m_ids.end() ? nullptr : *found;
}

void NDomainBase::SetIsReadOnlyFlag(bool isReadOnly) {
  for (auto const& node : m_nodes) node->m_isSealed = isReadOnly;
  m_isReadOnly = isReadOnly;
}

void NDomainBase::ReleaseNodes() noexcept {
  m_ids.clear();
  for (auto const& node : m_nodes) {
    node->m_isInDomain = false;
    node->m_isSealed = false;
  }
  // One at a time: a node's destructor may ask for the domain and its manager.
  while (!m_nodes.empty()) {
    boost::intrusive_ptr<NNode> const node = std::move(m_nodes.front());
    m_nodes.pop_front();
  }
}

}  // namespace corvanta::core::domain
