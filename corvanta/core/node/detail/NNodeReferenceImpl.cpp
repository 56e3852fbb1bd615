#include "corvanta/core/node/detail/NNodeReferenceImpl.h"

#include "corvanta/core/node/NNode.h"

namespace corvanta::core::node::detail {

NNodeReferenceImpl::NNodeReferenceImpl(NNode const* node)
    : m_weak(node == nullptr ? nullptr : node->GetWeakReference()), m_node(node) {}

boost::intrusive_ptr<NNode const> NNodeReferenceImpl::GetNode() const noexcept {
  if (!m_weak || m_weak->IsExpired() || !m_node->TryAddRef()) return nullptr;
  return {m_node, false};
}

}  // namespace corvanta::core::node::detail
