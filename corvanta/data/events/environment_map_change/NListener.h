#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::events::environment_map_change {

/// Is notified of the environment map of a material or an environment. The change is in place when
/// a signal comes. Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalImageChange(domain::material::NMaterialNode const& material) {
    OnImageChange(material);
  }
  void SignalImageChange(domain::environment::NEnvironmentNode const& environment) {
    OnImageChange(environment);
  }
  void SignalImageTypeChange(domain::material::NMaterialNode const& material) {
    OnImageTypeChange(material);
  }
  void SignalImageTypeChange(domain::environment::NEnvironmentNode const& environment) {
    OnImageTypeChange(environment);
  }

 protected:
  NListener() noexcept = default;
  NListener(NListener const&) noexcept = default;
  ~NListener() override;

 private:
  virtual void OnImageChange(domain::material::NMaterialNode const& material) = 0;
  virtual void OnImageChange(domain::environment::NEnvironmentNode const& environment) = 0;
  virtual void OnImageTypeChange(domain::material::NMaterialNode const& material) = 0;
  virtual void OnImageTypeChange(domain::environment::NEnvironmentNode const& environment) = 0;
};

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnImageChange(domain::material::NMaterialNode const& material) override {
    NotifyObservers([&](NListener& listener) { listener.SignalImageChange(material); });
  }
  void OnImageChange(domain::environment::NEnvironmentNode const& environment) override {
    NotifyObservers([&](NListener& listener) { listener.SignalImageChange(environment); });
  }
  void OnImageTypeChange(domain::material::NMaterialNode const& material) override {
    NotifyObservers([&](NListener& listener) { listener.SignalImageTypeChange(material); });
  }
  void OnImageTypeChange(domain::environment::NEnvironmentNode const& environment) override {
    NotifyObservers([&](NListener& listener) { listener.SignalImageTypeChange(environment); });
  }
};

}  // namespace corvanta::data::events::environment_map_change
