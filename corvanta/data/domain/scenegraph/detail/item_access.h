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
};

}  // namespace corvanta::data::domain::scenegraph::detail
