#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/events/environment/NListener.h"

namespace corvanta::data::events::environment {

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnFloorImageChange(domain::environment::NEnvironmentNode const& environment) override;
  void OnFloorGeometryChange(domain::environment::NEnvironmentNode const& environment) override;
  void OnAddLightEnv(domain::environment::NEnvironmentNode const& environment,
                     domain::light_env::NLightEnvNode const& lightEnv) override;
  void OnRemoveLightEnv(domain::environment::NEnvironmentNode const& environment,
                        domain::light_env::NLightEnvNode const& lightEnv) override;
};

}  // namespace corvanta::data::events::environment
