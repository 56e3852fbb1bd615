#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/events/environment_map_change/NListener.h"

namespace corvanta::data::events::environment_map_change {

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnImageChange(domain::material::NMaterialNode const& material) override;
  void OnImageChange(domain::environment::NEnvironmentNode const& environment) override;
  void OnImageTypeChange(domain::material::NMaterialNode const& material) override;
  void OnImageTypeChange(domain::environment::NEnvironmentNode const& environment) override;
};

}  // namespace corvanta::data::events::environment_map_change
