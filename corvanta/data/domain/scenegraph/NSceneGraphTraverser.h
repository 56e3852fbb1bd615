#pragma once

#include <memory>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::scenegraph {

/// The base of depth-first walks over a scene graph with all references followed. Derive, and
/// override the hooks that matter.
///
/// Every hook gets the item, the pointer given to Start, and the reference items that lead to it,
/// outermost first. Hidden items are walked too. A hook must not change the list of children that
/// is being walked. A tree that shows itself is cut at its second showing, and an item that stands
/// below itself at its second place: neither gets a hook there.
///
/// Fails: throws NSceneGraphWalkError beyond the budget of walk_budget.h, and where references are
/// nested deeper than the stack carries: some 10,000 on 8 MiB.
class CORVANTA_API NSceneGraphTraverser {
 public:
  using NCheckPoints = scenegraph::NCheckPoints;

  /// Walks `tree`.
  void Start(tree::NSceneGraphTreeNode& tree, void const* data);
  /// Walks the item of `path` and what is below it; the outermost tree gets no hook. The trees on
  /// the way down count as shown if the path is valid; if it isn't, its check points are handed to
  /// the hooks and mean nothing else. Does nothing if the item has gone.
  void Start(NSceneGraphPath<item::NSceneGraphItemNode> const& path, void const* data);

 protected:
  NSceneGraphTraverser();
  /// A copy has no tree, and assigning changes nothing.
  NSceneGraphTraverser(NSceneGraphTraverser const& other);
  NSceneGraphTraverser& operator=(NSceneGraphTraverser const& other);
  virtual ~NSceneGraphTraverser();

  /// Around each item, outside the hooks of its kind.
  virtual void BeforeCommon(item::NSceneGraphItemNode& node, void const* data,
                            NCheckPoints const& checkPoints);
  virtual void AfterCommon(item::NSceneGraphItemNode& node, void const* data,
                           NCheckPoints const& checkPoints);
  /// Calls TraverseExternal, so that the tree behind a reference is walked before its children. An
  /// override that doesn't call it keeps the walk out of that tree.
  virtual void Before(item::NSceneGraphReferenceNode& node, void const* data,
                      NCheckPoints const& checkPoints);
  virtual void Before(item::NSceneGraphModelNode& node, void const* data,
                      NCheckPoints const& checkPoints);
  virtual void Before(item::NSceneGraphLightNode& node, void const* data,
                      NCheckPoints const& checkPoints);
  virtual void Before(item::NSceneGraphGroupNode& node, void const* data,
                      NCheckPoints const& checkPoints);
  virtual void Before(item::NSceneGraphCameraNode& node, void const* data,
                      NCheckPoints const& checkPoints);
  /// Once for each showing of the tree, before its root. A tree without a root gets both hooks too.
  virtual void Before(tree::NSceneGraphTreeNode& node, void const* data,
                      NCheckPoints const& checkPoints);
  virtual void After(item::NSceneGraphReferenceNode& node, void const* data,
                     NCheckPoints const& checkPoints);
  virtual void After(item::NSceneGraphModelNode& node, void const* data,
                     NCheckPoints const& checkPoints);
  virtual void After(item::NSceneGraphLightNode& node, void const* data,
                     NCheckPoints const& checkPoints);
  virtual void After(item::NSceneGraphGroupNode& node, void const* data,
                     NCheckPoints const& checkPoints);
  virtual void After(item::NSceneGraphCameraNode& node, void const* data,
                     NCheckPoints const& checkPoints);
  virtual void After(tree::NSceneGraphTreeNode& node, void const* data,
                     NCheckPoints const& checkPoints);

  /// Walks the tree behind `reference`, if there is one; `checkPoints` are those of the reference.
  void TraverseExternal(item::NSceneGraphReferenceNode const& reference, void const* data,
                        NCheckPoints const& checkPoints);
  /// The outermost tree of the last Start; empty before that.
  core::node::NNodeReference<tree::NSceneGraphTreeNode> const& GetTree() const noexcept;

 private:
  struct Block;

  void Traverse(tree::NSceneGraphTreeNode& tree, void const* data, NCheckPoints const& checkPoints);
  void Traverse(item::NSceneGraphItemNode& item, void const* data, NCheckPoints const& checkPoints);

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::scenegraph
