#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/reference_countable/NWeakReferenceImpl.h"
#include "corvanta/data/domain/detail/attribute_effects.h"
#include "corvanta/data/domain/scenegraph/detail/NChildIndex.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"

namespace corvanta::data::domain::scenegraph::item {

struct NSceneGraphItemNode::Block {
  /// A reference item that shows this one as a root, weakly; in the order of serial numbers.
  struct Referrer {
    boost::intrusive_ptr<core::reference_countable::NWeakReferenceImpl const> weak;
    NSceneGraphItemNode const* item;
  };
  /// What a ray is tested against before the item is visited; see
  /// scenegraph::detail::NCullingBound.
  struct CullingBox {
    VX_Math::Box3 box;          // in the parent's frame, as the parent's box took it in
    float conditionNumber = 0;  // see GetConditionNumber; 0: the box culls nothing
    float extent = 0;           // the largest coordinate of the box and of the local translation
  };
  using ChildIndex = std::unordered_map<NSceneGraphItemNode const*, Children::const_iterator>;

  core::attribute::NAttributeHost& host;
  using enum domain::detail::NAttributeEffect;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/scenegraph/item/item_attributes.def"

  VX_Math::Matrix transform{};
  VX_Math::Box3 box{};
  CullingBox cullingBox{};
  bool isTransformDirty = true;
  bool isBoxDirty = true;
  bool isBeingBoxed = false;    // a walk for the box is in this item
  bool wasBoxed = false;        // its box has been computed
  unsigned listCount = 0;       // the lists that this item is in: an insert by index can make two
  std::uint64_t markedAt = 0;   // the clean epoch in which a walk last marked this item
  Block* nextMarked = nullptr;  // what that walk has marked and not yet left
  NSceneGraphItemNode* parent = nullptr;  // cleared by the parent's end
  std::uint32_t indexLeaf = 0;            // in the index of the parent, where there is one
  Children children{};
  std::unique_ptr<ChildIndex> childIndex{};  // of all children, from kIndexFrom on
  std::vector<Referrer> referrers{};
  std::unique_ptr<scenegraph::detail::NChildIndex> boxIndex{};  // where there are many children
};

}  // namespace corvanta::data::domain::scenegraph::item
