#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/events/scene_graph_tree_host/NListener.h"

namespace corvanta::data::events::scene_graph_tree_host {

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

  /// The delivery of the handlers, for a caller that has no host to raise it through.
  void SignalSceneGraphTreeChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree);
  void SignalSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot);

 private:
  ~NMultiplexer() override;

  void OnSceneGraphTreeChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree) override;
  void OnSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) override;
};

}  // namespace corvanta::data::events::scene_graph_tree_host
