#include "corvanta/data/events/scene_graph_tree_host/NListener.h"

namespace corvanta::data::events::scene_graph_tree_host {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::SignalSceneGraphTreeChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const& host,
    boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree) {
  NotifyObservers([&](NListener& listener) { listener.SignalSceneGraphTreeChange(host, oldTree); });
}

void NMultiplexer::OnSceneGraphTreeChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const& host,
    boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree) {
  SignalSceneGraphTreeChange(host, oldTree);
}

void NMultiplexer::SignalSceneGraphTreeRootChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const& host,
    domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) {
  NotifyObservers(
      [&](NListener& listener) { listener.SignalSceneGraphTreeRootChange(host, tree, oldRoot); });
}

void NMultiplexer::OnSceneGraphTreeRootChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const& host,
    domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) {
  SignalSceneGraphTreeRootChange(host, tree, oldRoot);
}

}  // namespace corvanta::data::events::scene_graph_tree_host
