#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/events/scene_graph_tree/NListener.h"

namespace corvanta::data::events::scene_graph_tree {

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnRootChange(
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) override;
};

}  // namespace corvanta::data::events::scene_graph_tree
