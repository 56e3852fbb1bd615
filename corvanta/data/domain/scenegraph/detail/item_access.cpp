#include "corvanta/data/domain/scenegraph/detail/item_access.h"

#include "corvanta/data/domain/scenegraph/item/detail/block.h"

namespace corvanta::data::domain::scenegraph::detail {

item::NSceneGraphItemNode const* NItemAccess::GetParent(item::NSceneGraphItemNode const& item) {
  return item.m_block->parent;
}

bool NItemAccess::IsReferrer(item::NSceneGraphItemNode const& item,
                             item::NSceneGraphReferenceNode const& reference) {
  return item.IsReferrer(reference);
}

unsigned NItemAccess::GetListCount(item::NSceneGraphItemNode const& item) {
  return item.m_block->listCount;
}

}  // namespace corvanta::data::domain::scenegraph::detail
