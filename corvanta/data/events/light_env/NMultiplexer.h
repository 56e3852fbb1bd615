#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/events/light_env/NListener.h"

namespace corvanta::data::events::light_env {

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnLampChange(domain::light_env::NLightEnvNode const& lightEnv,
                    domain::light_env::NLamp const& lamp, NLampEventType type) override;
};

}  // namespace corvanta::data::events::light_env
