#pragma once

#include <atomic>
#include <string>

#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/core/domain/detail/link.h"
#include "corvanta/core/domain/fwd.h"
#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/core/node/NNodeID.h"
#include "corvanta/export.h"

namespace corvanta::core::node {

/// A named, identified bag of attributes that lives in one domain. Hold it by
/// `boost::intrusive_ptr`.
class CORVANTA_API NNode : public name::NNamedObject, public attribute::NAttributeHost {
 public:
  NNodeID const& GetID() const noexcept { return m_id; }
  /// The domain given to the constructor, or the one that took the node in.
  /// Fails: null once the node was removed from it, and when the domain has gone.
  domain::NDomainBase* GetDomain() const noexcept { return m_domain ? m_domain->owner : nullptr; }
  /// Fails: null without a domain, and when the manager has gone.
  domain::NDomainManager const* GetDomainManager() const noexcept;

  /// Keepers are those of its holders that keep it to bring it back. A node that has left its
  /// domain, and that nobody else holds, counts as gone: references to it read as null.
  void AddKeeper() const noexcept { CountKeepers(1); }
  void RemoveKeeper() const noexcept { CountKeepers(-1); }
  bool IsHeldByKeepersAlone() const noexcept {
    return GetReferenceCount() <= m_keeperCount.load(std::memory_order_relaxed);
  }

 protected:
  NNode(NNodeID const& id, domain::NDomainBase* domain, std::wstring const& name);
  ~NNode() override;

 private:
  friend class domain::NDomainBase;

  void CountKeepers(int step) const noexcept {
    if (reference_countable::detail::IsSingleThreaded()) {
      m_keeperCount.store(m_keeperCount.load(std::memory_order_relaxed) + step,
                          std::memory_order_relaxed);
    } else {
      m_keeperCount.fetch_add(step, std::memory_order_relaxed);
    }
  }

  NNodeID const m_id;
  domain::detail::NLinkPointer<domain::NDomainBase> m_domain;
  NNode* m_nextById = nullptr;  // the link of the domain's table
  // The neighbours in the domain's order, which holds a count for each node in it.
  NNode* m_previous = nullptr;
  NNode* m_next = nullptr;
  bool m_isInDomain = false;
  bool m_isSealed = false;  // by the domain's read-only flag
  mutable std::atomic<int> m_keeperCount{0};
};

}  // namespace corvanta::core::node
