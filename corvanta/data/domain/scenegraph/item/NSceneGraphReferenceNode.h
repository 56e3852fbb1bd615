#pragma once

#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeHost.h"

namespace corvanta::data::domain::scenegraph::item {

/// Shows a whole other tree at its own place. The tree's unit and axes are converted to those of
/// the tree that the reference is in.
///
/// Its box is marked by a change of the shown tree's unit or axes, and by what changes below the
/// root once the root knows this reference: after a box was computed, or VerifyReference. Another
/// tree or another root doesn't mark it.
class CORVANTA_API NSceneGraphReferenceNode : public NSceneGraphItemNode,
                                              public tree::NSceneGraphTreeHost {
 public:
  NSceneGraphReferenceNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                           events::attribute_change::NMultiplexer const* multiplexer);
  ~NSceneGraphReferenceNode() override;

  using Hierarchy =
      core::observer::NObservable<NSceneGraphItemNode, events::scene_graph_hierarchy::NListener>;
  using TreeEvents = core::observer::NObservable<tree::NSceneGraphTreeHost,
                                                 events::scene_graph_tree_host::NListener>;
  using Hierarchy::AddObserver;
  using Hierarchy::RemoveObserver;
  using TreeEvents::AddObserver;
  using TreeEvents::RemoveObserver;

  /// Records this reference at the root of its tree, if there are both.
  void VerifyReference() const;

 private:
  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }
  wchar_t const* GetSceneGraphItemTypeImpl() const override;
  void CalculateBoundingBox(VX_Math::Box3& box, VX_Math::Matrix const& accumulated,
                            VX_Math::Matrix const& base) const override;

  void OnRootChangeImpl(boost::intrusive_ptr<NSceneGraphItemNode> const& oldRoot) override;
  void OnControlTransformChangeImpl() override;
  void OnSceneGraphTreeChange(
      boost::intrusive_ptr<tree::NSceneGraphTreeNode> const& oldTree) override;
};

}  // namespace corvanta::data::domain::scenegraph::item
