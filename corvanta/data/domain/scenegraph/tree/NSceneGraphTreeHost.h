#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeListener.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/events/scene_graph_tree_host/NListener.h"

namespace corvanta::data::domain::scenegraph::tree {

/// Anything that shows a tree: a scene, an environment, a reference item. It doesn't own the tree.
///
/// A host whose reference was set before the tree stood in its domain subscribes to it at the first
/// read that finds it, so a getter can raise signals.
class CORVANTA_API NSceneGraphTreeHost
    : public NSceneGraphTreeListener,
      public core::observer::NObservable<NSceneGraphTreeHost,
                                         events::scene_graph_tree_host::NListener> {
 public:
  /// Raises: at the first read that finds the tree, SignalSceneGraphTreeChange without an old tree,
  /// then the root change.
  /// Fails: null when the reference is empty, the tree has gone, or it is no tree.
  boost::intrusive_ptr<NSceneGraphTreeNode> GetSceneGraph() const;
  core::node::NNodeReference<NSceneGraphTreeNode> const& GetSceneGraphRef() const;
  /// Raises: SignalSceneGraphTreeChange with the old tree, always.
  void SetSceneGraph(core::node::NNodeReference<NSceneGraphTreeNode> const& tree);

 protected:
  /// Registers a host with a tree that it will be given, so that SetSceneGraph then needs no
  /// memory. Its end takes that back if the host shows another one.
  class Introduction {
   public:
    Introduction(NSceneGraphTreeHost& host,
                 core::node::NNodeReference<NSceneGraphTreeNode> const& tree);
    ~Introduction();
    Introduction(Introduction const&) = delete;
    Introduction& operator=(Introduction const&) = delete;

   private:
    NSceneGraphTreeHost& m_host;
    core::node::NNodeReference<NSceneGraphTreeNode> const m_tree;
    bool m_isNew = false;
  };

  NSceneGraphTreeHost();
  NSceneGraphTreeHost(NSceneGraphTreeHost const&) = delete;
  ~NSceneGraphTreeHost() override;

  /// Raises: SignalSceneGraphTreeRootChange, unless there is no tree to name.
  void OnRootChangeImpl(boost::intrusive_ptr<item::NSceneGraphItemNode> const& oldRoot) override;
  void OnControlTransformChangeImpl() override;
  /// Raises: SignalSceneGraphTreeChange.
  virtual void OnSceneGraphTreeChange(boost::intrusive_ptr<NSceneGraphTreeNode> const& oldTree);

 private:
  core::node::NNodeReference<NSceneGraphTreeNode> m_tree;
};

}  // namespace corvanta::data::domain::scenegraph::tree
