#include "corvanta/data/events/geometry_change/NMultiplexer.h"

namespace corvanta::data::events::geometry_change {

using domain::geometry::NGeometryChangeListener;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::OnGeometryChangeImpl(domain::geometry::NGeometryNode const& geometry,
                                        domain::geometry::NSurface const& surface,
                                        domain::geometry::NGeometryChangeType type) {
  NotifyObservers([&](NGeometryChangeListener& listener) {
    listener.OnGeometryChange(geometry, surface, type);
  });
}

}  // namespace corvanta::data::events::geometry_change
