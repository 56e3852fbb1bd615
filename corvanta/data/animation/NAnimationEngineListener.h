#pragma once

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/export.h"

namespace corvanta::data::animation {

class NAnimationEngine;

/// Is notified of the steps of an engine. Held weakly: hold it by `boost::intrusive_ptr`.
/// Rules: docs/events.md.
class CORVANTA_API NAnimationEngineListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  /// A step is over; `time` is the engine's.
  void SignalSetTime(NAnimationEngine const& engine, double time) { OnSetTimeImpl(engine, time); }

 protected:
  NAnimationEngineListener() noexcept = default;
  NAnimationEngineListener(NAnimationEngineListener const&) noexcept = default;
  ~NAnimationEngineListener() override;

 private:
  virtual void OnSetTimeImpl(NAnimationEngine const& engine, double time) = 0;
};

}  // namespace corvanta::data::animation
