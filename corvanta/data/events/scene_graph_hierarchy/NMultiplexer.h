#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/events/scene_graph_hierarchy/NListener.h"

namespace corvanta::data::events::scene_graph_hierarchy {

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

  /// The delivery of OnAddChild and OnRemoveChild, for a caller that has no node to raise it
  /// through.
  void SignalAddChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                      domain::scenegraph::item::NSceneGraphItemNode const& child) const;
  void SignalRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                         domain::scenegraph::item::NSceneGraphItemNode const& child) const;

 private:
  ~NMultiplexer() override;

  void OnAddChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                  domain::scenegraph::item::NSceneGraphItemNode const& child) override;
  void OnRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                     domain::scenegraph::item::NSceneGraphItemNode const& child) override;
};

}  // namespace corvanta::data::events::scene_graph_hierarchy
