#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::events::scene_graph_tree_host {

/// Is notified of the tree that a host shows, and its root. The change is in place when a signal
/// comes. Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalSceneGraphTreeChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree) {
    OnSceneGraphTreeChange(host, oldTree);
  }
  void SignalSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) {
    OnSceneGraphTreeRootChange(host, tree, oldRoot);
  }

 protected:
  NListener() noexcept = default;
  NListener(NListener const&) noexcept = default;
  ~NListener() override;

 private:
  virtual void OnSceneGraphTreeChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree) = 0;
  virtual void OnSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) = 0;
};

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
      boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree) override {
    SignalSceneGraphTreeChange(host, oldTree);
  }
  void OnSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) override {
    SignalSceneGraphTreeRootChange(host, tree, oldRoot);
  }
};

}  // namespace corvanta::data::events::scene_graph_tree_host
