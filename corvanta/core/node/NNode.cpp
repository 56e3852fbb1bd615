#include "corvanta/core/node/NNode.h"

#include "corvanta/core/domain/NDomainBase.h"

namespace corvanta::core::node {

NNode::NNode(NNodeID const& id, domain::NDomainBase* domain, std::wstring const& name)
    : NNamedObject(name), m_id(id), m_domain(domain == nullptr ? nullptr : domain->GetLink()) {}

NNode::~NNode() = default;

domain::NDomainManager const* NNode::GetDomainManager() const noexcept {
  domain::NDomainBase const* const domain = GetDomain();
  return domain == nullptr ? nullptr : domain->GetManager();
}

}  // namespace corvanta::core::node
