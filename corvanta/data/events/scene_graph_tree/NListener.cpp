#include "corvanta/data/events/scene_graph_tree/NListener.h"

namespace corvanta::data::events::scene_graph_tree {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::OnRootChange(
    domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) {
  NotifyObservers([&](NListener& listener) { listener.SignalRootChange(tree, oldRoot); });
}

}  // namespace corvanta::data::events::scene_graph_tree
