#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::events::scene_graph_model {

/// Is notified of the geometry and the material of a model item. The change is in place when a
/// signal comes. Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalGeometryChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::geometry::NGeometryNode> const& oldGeometry) {
    OnGeometryChange(model, oldGeometry);
  }
  void SignalMaterialChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::material::NMaterialNode> const& oldMaterial) {
    OnMaterialChange(model, oldMaterial);
  }

 protected:
  NListener() noexcept = default;
  NListener(NListener const&) noexcept = default;
  ~NListener() override;

 private:
  virtual void OnGeometryChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::geometry::NGeometryNode> const& oldGeometry) = 0;
  virtual void OnMaterialChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::material::NMaterialNode> const& oldMaterial) = 0;
};

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
      boost::intrusive_ptr<domain::geometry::NGeometryNode> const& oldGeometry) override {
    NotifyObservers(
        [&](NListener& listener) { listener.SignalGeometryChange(model, oldGeometry); });
  }
  void OnMaterialChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::material::NMaterialNode> const& oldMaterial) override {
    NotifyObservers(
        [&](NListener& listener) { listener.SignalMaterialChange(model, oldMaterial); });
  }
};

}  // namespace corvanta::data::events::scene_graph_model
