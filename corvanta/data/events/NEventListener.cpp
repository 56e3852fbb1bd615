// What all event kinds and the base of their fan-in have out of line: nothing but their beginnings
// and ends.
#include "corvanta/data/events/NEventListener.h"

#include "corvanta/data/events/attribute_change/NListener.h"
#include "corvanta/data/events/detail/NModelRecorder.h"
#include "corvanta/data/events/environment/NListener.h"
#include "corvanta/data/events/environment_map_change/NListener.h"
#include "corvanta/data/events/geometry_change/NMultiplexer.h"
#include "corvanta/data/events/light_env/NListener.h"
#include "corvanta/data/events/material/NListener.h"
#include "corvanta/data/events/scene/NListener.h"
#include "corvanta/data/events/scene_graph_hierarchy/NListener.h"
#include "corvanta/data/events/scene_graph_model/NListener.h"
#include "corvanta/data/events/scene_graph_tree/NListener.h"
#include "corvanta/data/events/scene_graph_tree_host/NListener.h"
#include "corvanta/data/events/texture/NListener.h"

namespace corvanta::data::events {

NEventListener::NEventListener() noexcept = default;
NEventListener::NEventListener(NEventListener const& other) noexcept = default;
NEventListener::~NEventListener() = default;

detail::NModelRecorder::~NModelRecorder() = default;

}  // namespace corvanta::data::events

namespace corvanta::data::events::attribute_change {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

}  // namespace corvanta::data::events::attribute_change

namespace corvanta::data::events::environment {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

}  // namespace corvanta::data::events::environment

namespace corvanta::data::events::environment_map_change {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

}  // namespace corvanta::data::events::environment_map_change

namespace corvanta::data::events::geometry_change {

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

}  // namespace corvanta::data::events::geometry_change

namespace corvanta::data::events::light_env {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

}  // namespace corvanta::data::events::light_env

namespace corvanta::data::events::material {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

}  // namespace corvanta::data::events::material

namespace corvanta::data::events::scene {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

}  // namespace corvanta::data::events::scene

namespace corvanta::data::events::scene_graph_hierarchy {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::SignalAddChild(
    domain::scenegraph::item::NSceneGraphItemNode const& parent,
    domain::scenegraph::item::NSceneGraphItemNode const& child) const {
  NotifyObservers([&](NListener& listener) { listener.SignalAddChild(parent, child); });
}

void NMultiplexer::SignalRemoveChild(
    domain::scenegraph::item::NSceneGraphItemNode const& parent,
    domain::scenegraph::item::NSceneGraphItemNode const& child) const {
  NotifyObservers([&](NListener& listener) { listener.SignalRemoveChild(parent, child); });
}

}  // namespace corvanta::data::events::scene_graph_hierarchy

namespace corvanta::data::events::scene_graph_model {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

}  // namespace corvanta::data::events::scene_graph_model

namespace corvanta::data::events::scene_graph_tree {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

}  // namespace corvanta::data::events::scene_graph_tree

namespace corvanta::data::events::scene_graph_tree_host {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::SignalSceneGraphTreeChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const& host,
    boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree) {
  NotifyObservers([&](NListener& listener) { listener.SignalSceneGraphTreeChange(host, oldTree); });
}

void NMultiplexer::SignalSceneGraphTreeRootChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const& host,
    domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) {
  NotifyObservers(
      [&](NListener& listener) { listener.SignalSceneGraphTreeRootChange(host, tree, oldRoot); });
}

}  // namespace corvanta::data::events::scene_graph_tree_host

namespace corvanta::data::events::texture {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

}  // namespace corvanta::data::events::texture
