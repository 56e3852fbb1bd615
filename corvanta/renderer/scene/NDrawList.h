#pragma once

#include <cstddef>
#include <deque>
#include <unordered_map>
#include <utility>
#include <vector>

#include "corvanta/data/domain/scenegraph/NSceneGraphTraverser.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/renderer/NDrawItem.h"
#include "corvanta/renderer/scene/NChangeListener.h"

namespace corvanta::renderer {

/// The models of a tree that are drawn, in the order in which a pick meets them: the children of a
/// model before the model itself, what a reference shows before the reference's own children.
///
/// Hidden items are skipped with all that they contain or show. A root's own visibility is ignored,
/// as in boxes and picks.
class NDrawList : private data::domain::scenegraph::NSceneGraphTraverser {
 public:
  std::vector<NDrawItem> const& GetItems() const { return m_items; }

  void Clear();
  /// Walks the tree anew, or computes the transforms of what moved alone. True if it walked.
  /// Cost: without a walk, a path's global transform for each model that moved.
  bool Update(data::domain::scenegraph::tree::NSceneGraphTreeNode& tree, NDirtyFlags const& flags);

 private:
  using Item = data::domain::scenegraph::item::NSceneGraphItemNode;
  using Model = data::domain::scenegraph::item::NSceneGraphModelNode;

  void BeforeCommon(Item& item, void const* data, NCheckPoints const& checkPoints) override;
  void AfterCommon(Item& item, void const* data, NCheckPoints const& checkPoints) override;
  void Before(data::domain::scenegraph::tree::NSceneGraphTreeNode& tree, void const* data,
              NCheckPoints const& checkPoints) override;
  void After(data::domain::scenegraph::tree::NSceneGraphTreeNode& tree, void const* data,
             NCheckPoints const& checkPoints) override;
  void After(Model& model, void const* data, NCheckPoints const& checkPoints) override;
  using NSceneGraphTraverser::After;
  using NSceneGraphTraverser::Before;

  static void UpdateTransform(NDrawItem& item);

  std::vector<NDrawItem> m_items;
  std::deque<NDrawItem> m_found;  // by a walk that goes on
  // The models at and below an item, for each of its occurrences in the tree.
  std::unordered_multimap<Item const*, std::pair<std::size_t, std::size_t>> m_ranges;
  std::vector<std::size_t> m_begins;  // of the items that the walk is below
  std::size_t m_hiddenDepth = 0;
  bool m_isRoot = false;
  bool m_isWalked = false;
};

}  // namespace corvanta::renderer
