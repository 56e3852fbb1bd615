#pragma once

#include <atomic>
#include <boost/intrusive_ptr.hpp>
#include <map>
#include <string>

#include "corvanta/core/domain/detail/link.h"
#include "corvanta/core/domain/fwd.h"
#include "corvanta/core/locator/NLocator.h"
#include "corvanta/export.h"

namespace corvanta::core::domain {

/// Owns the domains of a document, each under a locator. Lives on the stack or behind a counted
/// pointer.
class CORVANTA_API NDomainManager : public reference_countable::NReferenceCountable {
 public:
  struct Entry {
    boost::intrusive_ptr<NDomainBase> domain;
    std::wstring text;

    Entry();
    Entry(Entry const& other);
    Entry& operator=(Entry const& other);
    ~Entry();
  };
  using Iterator = std::map<locator::NLocator, Entry>::const_iterator;

  NDomainManager();
  NDomainManager(NDomainManager const&) = delete;
  NDomainManager& operator=(NDomainManager const&) = delete;
  /// Lets go of its domains; those that live on then read no manager.
  ~NDomainManager() override;

  /// Owns `domain` from now on; one that stands at the locator is replaced, which needs no memory.
  void RegisterDomain(NDomainBase& domain, locator::NLocator const& locator, std::wstring text);
  /// Fails: false if nothing stands at the locator.
  bool UnregisterDomain(locator::NLocator const& locator);
  /// Fails: null if nothing stands at the locator.
  boost::intrusive_ptr<NDomainBase> QueryDomain(locator::NLocator const& locator) const;

  /// The domains in the order of their locators.
  Iterator begin() const noexcept { return m_domains.begin(); }
  Iterator end() const noexcept { return m_domains.end(); }

  /// What the domains of this manager hold to find it.
  detail::NLinkPointer<NDomainManager const> const& GetLink() const noexcept { return m_link; }
  /// For the library: whether somebody has asked for the built-in nodes of this manager, which are
  /// kept elsewhere.
  std::atomic<bool>& GetBuiltInMark() const noexcept { return m_builtInMark; }

 private:
  std::map<locator::NLocator, Entry> m_domains;
  detail::NLinkPointer<NDomainManager const> const m_link;
  mutable std::atomic<bool> m_builtInMark{false};
};

}  // namespace corvanta::core::domain
