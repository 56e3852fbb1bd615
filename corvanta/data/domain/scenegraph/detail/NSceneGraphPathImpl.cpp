#include "corvanta/data/domain/scenegraph/detail/NSceneGraphPathImpl.h"

#include <algorithm>
#include <utility>

#include "corvanta/data/domain/scenegraph/NSceneGraphPathError.h"
#include "corvanta/data/domain/scenegraph/detail/item_access.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"
#include "corvanta/data/domain/scenegraph/transform.h"

namespace corvanta::data::domain::scenegraph::detail {

using item::NSceneGraphItemNode;
using item::NSceneGraphReferenceNode;
using VX_Math::Box3;
using VX_Math::Matrix;

struct NSceneGraphPathImpl::Block {
  ItemReference item;
  TreeReference tree;
  CheckPoints checkPoints;
};

NSceneGraphPathImpl::NSceneGraphPathImpl() : m_block(new Block) {}

NSceneGraphPathImpl::NSceneGraphPathImpl(ItemReference const& item, TreeReference const& tree,
                                         CheckPoints const& checkPoints)
    : m_block(new Block{item, tree, checkPoints}) {}

NSceneGraphPathImpl::NSceneGraphPathImpl(NSceneGraphPathImpl const& other)
    : m_block(new Block(*other.m_block)) {}

NSceneGraphPathImpl& NSceneGraphPathImpl::operator=(NSceneGraphPathImpl const& other) {
  if (this != &other) m_block = std::make_unique<Block>(*other.m_block);
  return *this;
}

NSceneGraphPathImpl::~NSceneGraphPathImpl() = default;

NSceneGraphPathImpl::ItemReference const& NSceneGraphPathImpl::GetItemRef() const noexcept {
  return m_block->item;
}

NSceneGraphPathImpl::TreeReference const& NSceneGraphPathImpl::GetTreeRef() const noexcept {
  return m_block->tree;
}

NSceneGraphPathImpl::CheckPoints const& NSceneGraphPathImpl::GetCheckPoints() const noexcept {
  return m_block->checkPoints;
}

bool NSceneGraphPathImpl::Less(NSceneGraphPathImpl const& other) const noexcept {
  Block const& a = *m_block;
  Block const& b = *other.m_block;
  if (a.item < b.item) return true;
  if (b.item < a.item) return false;
  if (a.tree < b.tree) return true;
  if (b.tree < a.tree) return false;
  return std::lexicographical_compare(a.checkPoints.begin(), a.checkPoints.end(),
                                      b.checkPoints.begin(), b.checkPoints.end());
}

bool NSceneGraphPathImpl::Equals(NSceneGraphPathImpl const& other) const noexcept {
  Block const& a = *m_block;
  Block const& b = *other.m_block;
  return a.item == b.item && a.tree == b.tree && a.checkPoints == b.checkPoints;
}

boost::intrusive_ptr<NSceneGraphItemNode const> NSceneGraphPathImpl::GetNode() const {
  return m_block->item.Get();
}

namespace {

using Resolved = std::vector<boost::intrusive_ptr<NSceneGraphReferenceNode const>>;

/// Fails: throws NSceneGraphPathError for a check point that has gone.
Resolved Resolve(NSceneGraphPathImpl::CheckPoints const& checkPoints) {
  Resolved resolved;
  resolved.reserve(checkPoints.size());
  for (auto const& point : checkPoints) {
    resolved.push_back(point.Get());
    if (!resolved.back()) throw NSceneGraphPathError();
  }
  return resolved;
}

}  // namespace

Matrix& NSceneGraphPathImpl::GetGlobalTransform(Matrix& out) const {
  Resolved const checkPoints = Resolve(m_block->checkPoints);
  auto const item = m_block->item.Get();
  if (!item) throw NSceneGraphPathError();
  auto const tree = m_block->tree.Get();
  if (!tree) throw NSceneGraphPathError();
  return scenegraph::GetGlobalTransform(*item, *tree, checkPoints, out);
}

Matrix NSceneGraphPathImpl::GetGlobalTransform() const {
  Matrix out;
  return GetGlobalTransform(out);
}

Box3 NSceneGraphPathImpl::GetLocalBoundingBox() const {
  auto const item = m_block->item.Get();
  if (!item) throw 0;
  auto const tree = m_block->tree.Get();
  if (!tree) throw 0;
  return item->GetBoundingBox(GetGlobalTransform(), tree->GetControlTransform());
}

Box3 NSceneGraphPathImpl::GetGlobalBoundingBox() const {
  // Listeners may change or end the path.
  auto const item = m_block->item.Get();
  auto const tree = m_block->tree.Get();
  Matrix const global = GetGlobalTransform();
  if (!item || !tree) throw 0;
  Box3 box = item->GetBoundingBox(global, tree->GetControlTransform());
  box.Transform(global);
  return box;
}

bool IsValid(NSceneGraphPathImpl const& path) {
  auto const item = path.GetItemRef().Get();
  auto const tree = path.GetTreeRef().Get();
  auto const root = tree ? tree->GetRoot() : nullptr;
  if (!item || !root) return false;
  Resolved checkPoints;
  try {
    checkPoints = Resolve(path.GetCheckPoints());
  } catch (NSceneGraphPathError const&) {
    return false;
  }
  NSceneGraphItemNode const* current = item.get();
  for (auto point = checkPoints.rbegin(); point != checkPoints.rend(); ++point) {
    if (!(*point)->GetSceneGraph()) return false;
    (*point)->VerifyReference();
    while (!NItemAccess::IsReferrer(*current, **point)) {
      current = NItemAccess::GetParent(*current);
      if (current == nullptr) return false;
    }
    current = point->get();
  }
  while (current != nullptr && current != root.get()) current = NItemAccess::GetParent(*current);
  return current != nullptr;
}

core::node::NReferenceState GetState(NSceneGraphPathImpl const& path) {
  std::vector<core::node::NReferenceState> states{path.GetItemRef().GetState(),
                                                  path.GetTreeRef().GetState()};
  for (auto const& point : path.GetCheckPoints()) states.push_back(point.GetState());
  for (auto const state : states) {
    if (state != core::node::NRS_RESOLVED) return state;
  }
  return IsValid(path) ? core::node::NRS_RESOLVED : core::node::NRS_NO_LONGER_BELOW;
}

namespace {

/// Whether `wanted` is the path's item or stands above it, below `stop` or there.
bool IsOnWayUp(NSceneGraphItemNode const& wanted, NSceneGraphItemNode const& item,
               NSceneGraphPathImpl::CheckPoints const& checkPoints,
               NSceneGraphItemNode const& stop) {
  NSceneGraphItemNode const* current = &item;
  if (current == &wanted) return true;
  if (current == &stop) return false;
  Resolved held;
  for (auto point = checkPoints.rbegin(); point != checkPoints.rend(); ++point) {
    held.push_back(point->Get());
    if (!held.back()) return false;
    NSceneGraphReferenceNode const& reference = *held.back();
    reference.VerifyReference();
    while (!NItemAccess::IsReferrer(*current, reference)) {
      current = NItemAccess::GetParent(*current);
      if (current == nullptr) return false;
      if (current == &wanted) return true;
      if (current == &stop) return false;
    }
    current = &reference;
    if (current == &wanted) return true;
    if (current == &stop) return false;
  }
  for (;;) {
    current = NItemAccess::GetParent(*current);
    if (current == nullptr) return false;
    if (current == &wanted) return true;
    if (current == &stop) return false;
  }
}

}  // namespace

SGPathRelation GetPathRelation(NSceneGraphPathImpl const& first,
                               NSceneGraphPathImpl const& second) {
  if (!(first.GetTreeRef() == second.GetTreeRef())) return SGPR_UNRELATED;
  auto const tree = first.GetTreeRef().Get();
  boost::intrusive_ptr<NSceneGraphItemNode const> stop = tree ? tree->GetRoot() : nullptr;
  // Listeners may change or end the paths.
  auto const a = first.GetCheckPoints();
  auto const b = second.GetCheckPoints();
  auto const firstItem = first.GetItemRef().Get();
  auto const secondItem = second.GetItemRef().Get();
  std::size_t common = 0;
  for (; stop && common < a.size() && common < b.size(); ++common) {
    if (!(a[common] == b[common])) return SGPR_UNRELATED;
    auto const point = a[common].Get();
    auto const shown = point ? point->GetSceneGraph() : nullptr;
    stop = shown ? shown->GetRoot() : nullptr;
  }
  if (!stop || !firstItem || !secondItem) return SGPR_UNRELATED;
  bool const isFirstDone = common == a.size();
  bool const isSecondDone = common == b.size();
  if (isFirstDone && IsOnWayUp(*firstItem, *secondItem, b, *stop)) {
    return SGPR_FIRST_CONTAINS_SECOND;
  }
  if ((!isFirstDone || isSecondDone) && IsOnWayUp(*secondItem, *firstItem, a, *stop)) {
    return SGPR_SECOND_CONTAINS_FIRST;
  }
  return SGPR_UNRELATED;
}

}  // namespace corvanta::data::domain::scenegraph::detail
