#include "corvanta/core/node/detail/NNodeReferenceImpl.h"

#include "corvanta/core/node/NNode.h"

namespace corvanta::core::node::detail {

NNodeReferenceImpl::NNodeReferenceImpl(NNode const* node)
    : m_weak(node == nullptr ? nullptr : node->GetWeakReference()), m_node(node) {}

boost::intrusive_ptr<NNode const> NNodeReferenceImpl::GetNode() const noexcept {
  if (!m_weak || m_weak->IsExpired()) return nullptr;
  if (m_weak->IsWithdrawn() && m_node->IsHeldByKeepersAlone()) return nullptr;
  if (!m_node->TryAddRef()) return nullptr;
  return {m_node, false};
}

}  // namespace corvanta::core::node::detail

namespace corvanta::core::node {

wchar_t const* GetText(NReferenceState state) noexcept {
  constexpr wchar_t const* kTexts[] = {L"resolved", L"never set", L"gone", L"of another class",
                                       L"no longer below"};
  return kTexts[state];
}

}  // namespace corvanta::core::node
