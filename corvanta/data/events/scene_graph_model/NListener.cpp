#include "corvanta/data/events/scene_graph_model/NListener.h"

namespace corvanta::data::events::scene_graph_model {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::OnGeometryChange(
    domain::scenegraph::item::NSceneGraphModelNode const& model,
    boost::intrusive_ptr<domain::geometry::NGeometryNode> const& oldGeometry) {
  NotifyObservers([&](NListener& listener) { listener.SignalGeometryChange(model, oldGeometry); });
}

void NMultiplexer::OnMaterialChange(
    domain::scenegraph::item::NSceneGraphModelNode const& model,
    boost::intrusive_ptr<domain::material::NMaterialNode> const& oldMaterial) {
  NotifyObservers([&](NListener& listener) { listener.SignalMaterialChange(model, oldMaterial); });
}

}  // namespace corvanta::data::events::scene_graph_model
