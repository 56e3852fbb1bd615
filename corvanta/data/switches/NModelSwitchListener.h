#pragma once

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/export.h"

namespace corvanta::data::switches {

namespace detail {
class NModelSet;
}

/// Is notified of the model sets of a switch. The set is in the list in both signals: it has just
/// come or is about to go. Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NModelSwitchListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalAddModelSet(detail::NModelSet const& set) { OnAddModelSet(set); }
  void SignalRemoveModelSet(detail::NModelSet const& set) { OnRemoveModelSet(set); }

 protected:
  NModelSwitchListener() noexcept = default;
  NModelSwitchListener(NModelSwitchListener const&) noexcept = default;
  ~NModelSwitchListener() override;

 private:
  virtual void OnAddModelSet(detail::NModelSet const& set) = 0;
  virtual void OnRemoveModelSet(detail::NModelSet const& set) = 0;
};

}  // namespace corvanta::data::switches
