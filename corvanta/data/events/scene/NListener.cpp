#include "corvanta/data/events/scene/NListener.h"

namespace corvanta::data::events::scene {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::OnEnvironmentChange(
    domain::scene::NSceneNode const& scene,
    boost::intrusive_ptr<domain::environment::NEnvironmentNode> const& oldEnvironment) {
  NotifyObservers(
      [&](NListener& listener) { listener.SignalEnvironmentChange(scene, oldEnvironment); });
}

}  // namespace corvanta::data::events::scene
