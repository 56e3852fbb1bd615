#include "corvanta/data/events/scene/NMultiplexer.h"

namespace corvanta::data::events::scene {

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::OnEnvironmentChange(
    domain::scene::NSceneNode const& scene,
    boost::intrusive_ptr<domain::environment::NEnvironmentNode> const& oldEnvironment) {
  NotifyObservers(
      [&](NListener& listener) { listener.SignalEnvironmentChange(scene, oldEnvironment); });
}

}  // namespace corvanta::data::events::scene
