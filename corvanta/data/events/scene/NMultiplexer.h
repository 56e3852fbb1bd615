#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/events/scene/NListener.h"

namespace corvanta::data::events::scene {

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnEnvironmentChange(
      domain::scene::NSceneNode const& scene,
      boost::intrusive_ptr<domain::environment::NEnvironmentNode> const& oldEnvironment) override;
};

}  // namespace corvanta::data::events::scene
