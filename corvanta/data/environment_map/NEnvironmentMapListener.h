#pragma once

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/export.h"

namespace corvanta::data::environment_map {

class NEnvironmentMap;

/// Is notified of one environment map. The change is in place when a signal comes.
/// Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NEnvironmentMapListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalImageChange(NEnvironmentMap const& map) { OnImageChange(map); }
  void SignalImageTypeChange(NEnvironmentMap const& map) { OnImageTypeChange(map); }

 protected:
  NEnvironmentMapListener() noexcept = default;
  NEnvironmentMapListener(NEnvironmentMapListener const&) noexcept = default;
  ~NEnvironmentMapListener() override;

 private:
  virtual void OnImageChange(NEnvironmentMap const& map) = 0;
  virtual void OnImageTypeChange(NEnvironmentMap const& map) = 0;
};

}  // namespace corvanta::data::environment_map
