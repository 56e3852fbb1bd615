#include "corvanta/data/events/light_env/NListener.h"

namespace corvanta::data::events::light_env {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::OnLampChange(domain::light_env::NLightEnvNode const& lightEnv,
                                domain::light_env::NLamp const& lamp, NLampEventType type) {
  NotifyObservers([&](NListener& listener) { listener.SignalLampChange(lightEnv, lamp, type); });
}

}  // namespace corvanta::data::events::light_env
