#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::events::scene {

/// Is notified of the environment of a scene. The change is in place when a signal comes.
/// Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalEnvironmentChange(
      domain::scene::NSceneNode const& scene,
      boost::intrusive_ptr<domain::environment::NEnvironmentNode> const& oldEnvironment) {
    OnEnvironmentChange(scene, oldEnvironment);
  }

 protected:
  NListener() noexcept = default;
  NListener(NListener const&) noexcept = default;
  ~NListener() override;

 private:
  virtual void OnEnvironmentChange(
      domain::scene::NSceneNode const& scene,
      boost::intrusive_ptr<domain::environment::NEnvironmentNode> const& oldEnvironment) = 0;
};

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
      boost::intrusive_ptr<domain::environment::NEnvironmentNode> const& oldEnvironment) override {
    NotifyObservers(
        [&](NListener& listener) { listener.SignalEnvironmentChange(scene, oldEnvironment); });
  }
};

}  // namespace corvanta::data::events::scene
