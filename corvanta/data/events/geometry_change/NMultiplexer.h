#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/geometry/NGeometryChangeListener.h"

namespace corvanta::data::events::geometry_change {

/// Passes every change of a geometry's surfaces on to whoever registered here.
/// Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public domain::geometry::NGeometryChangeListener,
      public core::observer::NObservable<NMultiplexer, domain::geometry::NGeometryChangeListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnGeometryChangeImpl(domain::geometry::NGeometryNode const& geometry,
                            domain::geometry::NSurface const& surface,
                            domain::geometry::NGeometryChangeType type) override {
    NotifyObservers([&](domain::geometry::NGeometryChangeListener& listener) {
      listener.OnGeometryChange(geometry, surface, type);
    });
  }
};

}  // namespace corvanta::data::events::geometry_change
