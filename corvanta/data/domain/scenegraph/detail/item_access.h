#pragma once

#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"

namespace corvanta::data::domain::scenegraph::detail {

/// What the walks of the scene graph see of an item beyond its public side, without counting.
class CORVANTA_API NItemAccess {
 public:
  /// Null without a parent. The pointer is good while nothing edits the hierarchy.
  static item::NSceneGraphItemNode const* GetParent(item::NSceneGraphItemNode const& item);
  /// IsReferredFrom for a reference that was verified already.
  static bool IsReferrer(item::NSceneGraphItemNode const& item,
                         item::NSceneGraphReferenceNode const& reference);
  /// Defined for sources that include the item's block.
  static auto& GetBlock(item::NSceneGraphItemNode const& item) { return *item.m_block; }
  /// Asks the memory for what a visit of the item reads.
  static void Prefetch(item::NSceneGraphItemNode const& item) noexcept;
  /// After this a mark goes up from an item that is marked already.
  static void NoteCleaning() noexcept { item::NSceneGraphItemNode::NoteCleaning(); }
  /// The lists of children that the item is in: more than one after an insert by index.
  static unsigned GetListCount(item::NSceneGraphItemNode const& item);
};

}  // namespace corvanta::data::domain::scenegraph::detail
