#include "corvanta/core/domain/NDomainManager.h"

#include "corvanta/core/domain/NDomainBase.h"

namespace corvanta::core::domain {

NDomainManager::Entry::Entry(NDomainBase& registered, std::wstring const& description)
    : domain(&registered), text(description) {}
NDomainManager::Entry::Entry(Entry const& other) = default;
NDomainManager::Entry& NDomainManager::Entry::operator=(Entry const& other) = default;
NDomainManager::Entry::~Entry() = default;

NDomainManager::NDomainManager() : m_link(new detail::NLink<NDomainManager const>(this)) {}

NDomainManager::~NDomainManager() {
  // The nodes of the domains that end with the manager still find it.
  m_domains.clear();
  m_link->owner = nullptr;
}

void NDomainManager::RegisterDomain(NDomainBase& domain, locator::NLocator const& locator,
                                    std::wstring const& text) {
  Entry entry(domain, text);
  auto const [place, isNew] = m_domains.try_emplace(locator, entry);
  if (!isNew) {
    std::swap(place->second.domain, entry.domain);  // the old domain goes last
    place->second.text = text;
  }
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
