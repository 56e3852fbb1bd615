#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::events::scene_graph_hierarchy {

/// Is notified of the children of an item. The change is in place when a signal comes.
/// Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalAddChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                      domain::scenegraph::item::NSceneGraphItemNode const& child) {
    OnAddChild(parent, child);
  }
  void SignalRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                         domain::scenegraph::item::NSceneGraphItemNode const& child) {
    OnRemoveChild(parent, child);
  }

 protected:
  NListener() noexcept = default;
  NListener(NListener const&) noexcept = default;
  ~NListener() override;

 private:
  virtual void OnAddChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                          domain::scenegraph::item::NSceneGraphItemNode const& child) = 0;
  virtual void OnRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                             domain::scenegraph::item::NSceneGraphItemNode const& child) = 0;
};

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
                  domain::scenegraph::item::NSceneGraphItemNode const& child) override {
    SignalAddChild(parent, child);
  }
  void OnRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                     domain::scenegraph::item::NSceneGraphItemNode const& child) override {
    SignalRemoveChild(parent, child);
  }
};

}  // namespace corvanta::data::events::scene_graph_hierarchy
