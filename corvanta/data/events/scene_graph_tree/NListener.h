#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::events::scene_graph_tree {

/// Is notified of the root of a tree. The change is in place when a signal comes.
/// Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalRootChange(
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) {
    OnRootChange(tree, oldRoot);
  }

 protected:
  NListener() noexcept = default;
  NListener(NListener const&) noexcept = default;
  ~NListener() override;

 private:
  virtual void OnRootChange(
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) = 0;
};

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
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) override {
    NotifyObservers([&](NListener& listener) { listener.SignalRootChange(tree, oldRoot); });
  }
};

}  // namespace corvanta::data::events::scene_graph_tree
