#include "corvanta/core/node/NNode.h"

#include "corvanta/core/domain/NDomainBase.h"
#include "corvanta/core/node/NNodeReferenceError.h"

namespace corvanta::core::node {

namespace {

/// Most default names get a number in their domain.
std::wstring WithRoomForNumber(std::wstring const& name) {
  std::wstring roomy;
  roomy.reserve(name.size() + std::size(L" (1234567)") - 1);
  roomy = name;
  return roomy;
}

}  // namespace

NNode::NNode(NNodeID const& id, domain::NDomainBase* domain, std::wstring const& name)
    : NNamedObject(WithRoomForNumber(name)),
      m_id(id),
      m_domain(domain == nullptr ? nullptr : domain->GetLink()) {}

NNode::~NNode() = default;

domain::NDomainManager const* NNode::GetDomainManager() const noexcept {
  domain::NDomainBase const* const domain = GetDomain();
  return domain == nullptr ? nullptr : domain->GetManager();
}

NNodeReferenceError::~NNodeReferenceError() = default;

wchar_t const* NNodeReferenceError::GetErrorCodeImpl() const { return L"Node Reference Error"; }

}  // namespace corvanta::core::node
