#include "corvanta/data/events/environment/NListener.h"

namespace corvanta::data::events::environment {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::OnFloorImageChange(domain::environment::NEnvironmentNode const& environment) {
  NotifyObservers([&](NListener& listener) { listener.SignalFloorImageChange(environment); });
}

void NMultiplexer::OnFloorGeometryChange(domain::environment::NEnvironmentNode const& environment) {
  NotifyObservers([&](NListener& listener) { listener.SignalFloorGeometryChange(environment); });
}

void NMultiplexer::OnAddLightEnv(domain::environment::NEnvironmentNode const& environment,
                                 domain::light_env::NLightEnvNode const& lightEnv) {
  NotifyObservers([&](NListener& listener) { listener.SignalAddLightEnv(environment, lightEnv); });
}

void NMultiplexer::OnRemoveLightEnv(domain::environment::NEnvironmentNode const& environment,
                                    domain::light_env::NLightEnvNode const& lightEnv) {
  NotifyObservers(
      [&](NListener& listener) { listener.SignalRemoveLightEnv(environment, lightEnv); });
}

}  // namespace corvanta::data::events::environment
