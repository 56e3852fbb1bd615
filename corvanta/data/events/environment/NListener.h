#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::events::environment {

/// Is notified of what an environment node shows besides its attributes. The change is in place
/// when a signal comes. Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalFloorImageChange(domain::environment::NEnvironmentNode const& environment) {
    OnFloorImageChange(environment);
  }
  void SignalFloorGeometryChange(domain::environment::NEnvironmentNode const& environment) {
    OnFloorGeometryChange(environment);
  }
  void SignalAddLightEnv(domain::environment::NEnvironmentNode const& environment,
                         domain::light_env::NLightEnvNode const& lightEnv) {
    OnAddLightEnv(environment, lightEnv);
  }
  void SignalRemoveLightEnv(domain::environment::NEnvironmentNode const& environment,
                            domain::light_env::NLightEnvNode const& lightEnv) {
    OnRemoveLightEnv(environment, lightEnv);
  }

 protected:
  NListener() noexcept = default;
  NListener(NListener const&) noexcept = default;
  ~NListener() override;

 private:
  virtual void OnFloorImageChange(domain::environment::NEnvironmentNode const& environment) = 0;
  virtual void OnFloorGeometryChange(domain::environment::NEnvironmentNode const& environment) = 0;
  virtual void OnAddLightEnv(domain::environment::NEnvironmentNode const& environment,
                             domain::light_env::NLightEnvNode const& lightEnv) = 0;
  virtual void OnRemoveLightEnv(domain::environment::NEnvironmentNode const& environment,
                                domain::light_env::NLightEnvNode const& lightEnv) = 0;
};

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnFloorImageChange(domain::environment::NEnvironmentNode const& environment) override {
    NotifyObservers([&](NListener& listener) { listener.SignalFloorImageChange(environment); });
  }
  void OnFloorGeometryChange(domain::environment::NEnvironmentNode const& environment) override {
    NotifyObservers([&](NListener& listener) { listener.SignalFloorGeometryChange(environment); });
  }
  void OnAddLightEnv(domain::environment::NEnvironmentNode const& environment,
                     domain::light_env::NLightEnvNode const& lightEnv) override {
    NotifyObservers(
        [&](NListener& listener) { listener.SignalAddLightEnv(environment, lightEnv); });
  }
  void OnRemoveLightEnv(domain::environment::NEnvironmentNode const& environment,
                        domain::light_env::NLightEnvNode const& lightEnv) override {
    NotifyObservers(
        [&](NListener& listener) { listener.SignalRemoveLightEnv(environment, lightEnv); });
  }
};

}  // namespace corvanta::data::events::environment
