#include "corvanta/data/events/environment_map_change/NListener.h"

namespace corvanta::data::events::environment_map_change {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::OnImageChange(domain::material::NMaterialNode const& material) {
  NotifyObservers([&](NListener& listener) { listener.SignalImageChange(material); });
}

void NMultiplexer::OnImageChange(domain::environment::NEnvironmentNode const& environment) {
  NotifyObservers([&](NListener& listener) { listener.SignalImageChange(environment); });
}

void NMultiplexer::OnImageTypeChange(domain::material::NMaterialNode const& material) {
  NotifyObservers([&](NListener& listener) { listener.SignalImageTypeChange(material); });
}

void NMultiplexer::OnImageTypeChange(domain::environment::NEnvironmentNode const& environment) {
  NotifyObservers([&](NListener& listener) { listener.SignalImageTypeChange(environment); });
}

}  // namespace corvanta::data::events::environment_map_change
