#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/events/light_env/NLampEventType.h"
#include "corvanta/export.h"

namespace corvanta::data::events::light_env {

/// Is notified of the lamps of a light environment. The change is in place when a signal comes.
/// Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalLampChange(domain::light_env::NLightEnvNode const& lightEnv,
                        domain::light_env::NLamp const& lamp, NLampEventType type) {
    OnLampChange(lightEnv, lamp, type);
  }

 protected:
  NListener() noexcept = default;
  NListener(NListener const&) noexcept = default;
  ~NListener() override;

 private:
  virtual void OnLampChange(domain::light_env::NLightEnvNode const& lightEnv,
                            domain::light_env::NLamp const& lamp, NLampEventType type) = 0;
};

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnLampChange(domain::light_env::NLightEnvNode const& lightEnv,
                    domain::light_env::NLamp const& lamp, NLampEventType type) override {
    NotifyObservers([&](NListener& listener) { listener.SignalLampChange(lightEnv, lamp, type); });
  }
};

}  // namespace corvanta::data::events::light_env
