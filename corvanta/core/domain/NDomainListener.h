#pragma once

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/export.h"

namespace corvanta::core::node {
class NNode;
}

namespace corvanta::core::domain {

class NDomainBase;

/// Is notified of the nodes that come to a domain and leave it. The change is in place when a
/// signal comes; the end of a domain raises nothing. Held weakly: hold it by
/// `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NDomainListener
    : public virtual reference_countable::NReferenceCountableWithWeakReference {
 public:
  /// `node` is in `domain`, under its id and its name.
  void SignalNodeAdded(NDomainBase const& domain, node::NNode& node) { OnNodeAdded(domain, node); }
  /// `node` has left `domain`, and is held until the signal is over. `next` is the node that
  /// followed it in the domain's order, null for the last one: its place.
  void SignalNodeRemoved(NDomainBase const& domain, node::NNode& node, node::NNode const* next) {
    OnNodeRemoved(domain, node, next);
  }

 protected:
  NDomainListener() noexcept = default;
  NDomainListener(NDomainListener const&) noexcept = default;
  ~NDomainListener() override;

 private:
  virtual void OnNodeAdded(NDomainBase const& domain, node::NNode& node) = 0;
  virtual void OnNodeRemoved(NDomainBase const& domain, node::NNode& node,
                             node::NNode const* next) = 0;
};

}  // namespace corvanta::core::domain
