#pragma once

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/export.h"

namespace corvanta::data::switches {

/// Is notified of the material list of a switch. The change is in place when a signal comes.
/// Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NMaterialSwitchListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalAddMaterial() { OnAddMaterial(); }
  void SignalRemoveMaterial() { OnRemoveMaterial(); }

 protected:
  NMaterialSwitchListener() noexcept = default;
  NMaterialSwitchListener(NMaterialSwitchListener const&) noexcept = default;
  ~NMaterialSwitchListener() override;

 private:
  virtual void OnAddMaterial() = 0;
  virtual void OnRemoveMaterial() = 0;
};

}  // namespace corvanta::data::switches
