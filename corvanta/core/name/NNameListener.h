#pragma once

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/export.h"

namespace corvanta::core::name {

class NNamedObject;
class NNamespace;

/// Is notified of every SetName in a namespace. Held weakly: hold it by `boost::intrusive_ptr`.
/// Rules: docs/events.md.
class CORVANTA_API NNameListener
    : public virtual reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalSetName(NNamespace const& space, NNamedObject const& object) {
    OnSetName(space, object);
  }

 protected:
  NNameListener() noexcept = default;
  NNameListener(NNameListener const&) noexcept = default;
  ~NNameListener() override;

 private:
  virtual void OnSetName(NNamespace const& space, NNamedObject const& object) = 0;
};

}  // namespace corvanta::core::name
