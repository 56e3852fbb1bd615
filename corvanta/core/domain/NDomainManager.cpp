#include "corvanta/core/domain/NDomainManager.h"

#include "corvanta/core/domain/NDomainBase.h"

namespace corvanta::core::domain {

NDomainManager::Entry::Entry() = default;
NDomainManager::Entry::Entry(Entry const& other) = default;
NDomainManager::Entry& NDomainManager::Entry::operator=(Entry const& other) = default;
NDomainManager::Entry::~Entry() = default;

NDomainManager::NDomainManager() : m_link(new detail::NLink<NDomainManager const>(this)) {}

NDomainManager::~NDomainManager() {
  // One at a time: the nodes of the domains that end with the manager still find it.
  while (!m_domains.empty()) m_domains.extract(m_domains.begin());
  m_link->owner = nullptr;
}

void NDomainManager::RegisterDomain(NDomainBase& domain, locator::NLocator const& locator,
                                    std::wstring text) {
  Entry& entry = m_domains[locator];
  entry.text.swap(text);
  // Counted last, when nothing can fail; the domain that stood there goes when all is in place.
  boost::intrusive_ptr<NDomainBase> replaced(&domain);
  entry.domain.swap(replaced);
}

bool NDomainManager::UnregisterDomain(locator::NLocator const& locator) {
  auto const node = m_domains.extract(locator);
  return !node.empty();
}

boost::intrusive_ptr<NDomainBase> NDomainManager::QueryDomain(
    locator::NLocator const& locator) const {
  auto const found = m_domains.find(locator);
  return found == m_domains.end() ? nullptr : found->second.domain;
}

}  // namespace corvanta::core::domain
