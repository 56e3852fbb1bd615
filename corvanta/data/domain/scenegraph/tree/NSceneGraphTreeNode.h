#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>
#include <string>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/NNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeListener.h"
#include "corvanta/data/events/scene_graph_tree/NListener.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::data::domain::scenegraph::tree {

/// The conversions of axes.
inline std::wstring const CCV_NONE = L"none";
inline std::wstring const CCV_ZUP_TO_YUP = L"zup2yup";

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/scenegraph/tree/tree_attributes.def"

/// Names one root item, and says in which unit and axes its items are expressed.
///
/// Owns nothing: the root reads as null when it has gone.
class CORVANTA_API NSceneGraphTreeNode
    : public NNode,
      public core::observer::NObservable<NSceneGraphTreeNode, NSceneGraphTreeListener>,
      public core::observer::NObservable<NSceneGraphTreeNode, events::scene_graph_tree::NListener> {
 public:
  NSceneGraphTreeNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                      events::attribute_change::NMultiplexer const* multiplexer);
  ~NSceneGraphTreeNode() override;

  using Hosts = core::observer::NObservable<NSceneGraphTreeNode, NSceneGraphTreeListener>;
  using Events =
      core::observer::NObservable<NSceneGraphTreeNode, events::scene_graph_tree::NListener>;
  using Events::AddObserver;
  using Events::RemoveObserver;
  using Hosts::AddObserver;
  using Hosts::RemoveObserver;

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/scenegraph/tree/tree_attributes.def"

  /// Fails: null when the reference is empty, the root has gone, or it is no item.
  boost::intrusive_ptr<item::NSceneGraphItemNode> GetRoot() const;
  core::node::NNodeReference<item::NSceneGraphItemNode> const& GetRootRef() const;
  /// Raises: OnRootChange on the hosts, then SignalRootChange, both with the old root; always.
  void SetRoot(core::node::NNodeReference<item::NSceneGraphItemNode> const& root);

  /// From the tree's unit and axes to global ones: a uniform scale by the unit, then z-up to y-up.
  /// Cost: a load while it is clean.
  VX_Math::Matrix const& GetControlTransform() const;

  /// Raises: nothing.
  bool IsTessellated() const;
  void SetIsTessellated(bool isTessellated);

  /// Gives `target` the name, the attributes and the root.
  void CopyTo(NSceneGraphTreeNode& target) const;

 private:
  struct Block;

  void OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) override;
  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::scenegraph::tree
