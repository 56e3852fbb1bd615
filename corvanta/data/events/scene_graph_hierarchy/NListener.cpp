#include "corvanta/data/events/scene_graph_hierarchy/NListener.h"

namespace corvanta::data::events::scene_graph_hierarchy {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::SignalAddChild(
    domain::scenegraph::item::NSceneGraphItemNode const& parent,
    domain::scenegraph::item::NSceneGraphItemNode const& child) const {
  NotifyObservers([&](NListener& listener) { listener.SignalAddChild(parent, child); });
}

void NMultiplexer::OnAddChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                              domain::scenegraph::item::NSceneGraphItemNode const& child) {
  SignalAddChild(parent, child);
}

void NMultiplexer::SignalRemoveChild(
    domain::scenegraph::item::NSceneGraphItemNode const& parent,
    domain::scenegraph::item::NSceneGraphItemNode const& child) const {
  NotifyObservers([&](NListener& listener) { listener.SignalRemoveChild(parent, child); });
}

void NMultiplexer::OnRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                                 domain::scenegraph::item::NSceneGraphItemNode const& child) {
  SignalRemoveChild(parent, child);
}

}  // namespace corvanta::data::events::scene_graph_hierarchy
