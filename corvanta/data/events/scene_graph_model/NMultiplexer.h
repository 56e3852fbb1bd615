#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/events/scene_graph_model/NListener.h"

namespace corvanta::data::events::scene_graph_model {

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnGeometryChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::geometry::NGeometryNode> const& oldGeometry) override;
  void OnMaterialChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::material::NMaterialNode> const& oldMaterial) override;
};

}  // namespace corvanta::data::events::scene_graph_model
