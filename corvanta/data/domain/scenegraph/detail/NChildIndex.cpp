#include "corvanta/data/domain/scenegraph/detail/NChildIndex.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <utility>

#include "corvanta/core/attribute/detail/silent_writes.h"
#include "corvanta/data/domain/scenegraph/detail/culling_bound.h"
#include "corvanta/data/domain/scenegraph/detail/item_access.h"
#include "corvanta/data/domain/scenegraph/item/detail/block.h"

namespace corvanta::data::domain::scenegraph::detail {

// A leaf that isn't stale tells what the plain walk would find at its child now. What its child's
// part in the parent's box is made of changes only where one of these marks the leaf: the walk of
// dirty marks, which goes up from every box that falls dirty; CopyTo; and, since the plain walk
// reads the two flags at every visit, a count of silent writes to them. A box that is computed
// without a mark was dirty before, and the leaf of a visible child with a dirty box stays stale.
//
// What the parent link of the child doesn't lead back to this parent has no leaf that marks could
// find; such children, left behind by an insert by index elsewhere, and absolute ones, whose
// boxes depend on the matrices above, are kRecomputed. The index of an item is dropped when a
// parent link of one of its children changes without it.
//
// A pick visits just the children that NCullingBound lets through, so that it is the plain walk
// also where listeners edit in its middle: leaves are only settled while the parent's box is
// computed, which is when the plain walk writes the culling boxes, and stale leaves are always
// proposed.
//
// Marks allocate nothing: the stale leaves are a chain. No listener can run inside of Settle.

using item::NSceneGraphItemNode;
using item::SGIT_CAMERA;
using item::SGIT_GROUP;
using item::SGIT_LIGHT;
using item::SGIT_MODEL;
using VX_Math::Box3;

namespace {

constexpr std::uint64_t kGap = std::uint64_t{1} << 32;
constexpr std::uint64_t kFirstOrder = std::uint64_t{1} << 63;

constexpr std::size_t kSome = 16;  // visits that are no reason to look at all children
constexpr std::size_t kAhead = 6;  // leaves between asking the memory and the use
constexpr float kLargestReach = std::numeric_limits<float>::max();

std::atomic<std::size_t> g_fewestChildren{NChildIndex::kFewestChildren};

bool IsNegativeZero(float value) noexcept { return value == 0 && std::signbit(value); }

}  // namespace

bool NChildIndex::HasNegativeZero(Box3 const& box) noexcept {
  for (int axis = 0; axis != 3; ++axis) {
    if (IsNegativeZero(box.min[axis]) || IsNegativeZero(box.max[axis])) return true;
  }
  return false;
}

void NChildIndex::SetFewestChildren(std::size_t count) noexcept {
  g_fewestChildren.store(count, std::memory_order_relaxed);
}

NChildIndex::NChildIndex(Item const& parent)
    : m_parent(parent), m_silentWrites(core::attribute::detail::GetSilentWriteCount()) {
  using namespace core::attribute::detail;
  static bool const isCounting =
      (InternName(item::AN_IS_VISIBLE, kCountsSilentWrites),
       InternName(item::AN_TRANSFORM_IS_ABSOLUTE, kCountsSilentWrites), true);
  static_cast<void>(isCounting);
  auto const& children = parent.GetChildren();
  m_leaves.reserve(children.size());
  std::uint64_t order = kFirstOrder;
  for (auto const& child : children) {
    std::uint32_t const leaf = AddLeaf(*child, order += kGap);
    auto& block = NItemAccess::GetBlock(*child);
    if (block.parent == &parent) block.indexLeaf = leaf;
  }
}

NChildIndex* NChildIndex::Use(Item const& parent, bool isForPick) noexcept {
  auto& block = NItemAccess::GetBlock(parent);
  try {
    if (!block.boxIndex) {
      if (block.children.size() < g_fewestChildren.load(std::memory_order_relaxed)) return nullptr;
      block.boxIndex = std::make_unique<NChildIndex>(parent);
      if (isForPick) block.boxIndex->Adopt();
    }
    block.boxIndex->CheckSilentWrites();
  } catch (std::bad_alloc const&) {
    block.boxIndex.reset();
  }
  return block.boxIndex.get();
}

NChildIndex* NChildIndex::UseForPick(Item const& parent) noexcept { return Use(parent, true); }

NChildIndex* NChildIndex::UseForBox(Item const& parent) noexcept {
  // An item whose box is asked for once, and no more, needs no index.
  if (!std::exchange(NItemAccess::GetBlock(parent).wasBoxed, true)) return nullptr;
  return Use(parent, false);
}

void NChildIndex::Drop(Item const& parent) noexcept {
  NItemAccess::GetBlock(parent).boxIndex.reset();
}

void NChildIndex::OnInsert(Item const& parent, Item const& child, Item const* previous,
                           Item const* next) noexcept {
  auto& block = NItemAccess::GetBlock(parent);
  if (!block.boxIndex) return;
  NChildIndex& index = *block.boxIndex;
  auto const isOurs = [&parent](Item const* item) {
    return item == nullptr || NItemAccess::GetBlock(*item).parent == &parent;
  };
  auto const orderOf = [&index](Item const& item) {
    return index.m_leaves[NItemAccess::GetBlock(item).indexLeaf].order;
  };
  if (!isOurs(previous) || !isOurs(next)) {
    block.boxIndex.reset();
    return;
  }
  std::uint64_t order = kFirstOrder;
  if (next == nullptr) {
    if (previous != nullptr) order = orderOf(*previous) + kGap;
  } else if (previous == nullptr) {
    order = orderOf(*next) - kGap;
  } else {
    if (orderOf(*next) - orderOf(*previous) < 2) index.Renumber();
    order = orderOf(*previous) + (orderOf(*next) - orderOf(*previous)) / 2;
  }
  try {
    NItemAccess::GetBlock(child).indexLeaf = index.AddLeaf(child, order);
  } catch (std::bad_alloc const&) {
    block.boxIndex.reset();
  }
}

void NChildIndex::OnRemove(Item const& parent, Item const& child) noexcept {
  auto const& block = NItemAccess::GetBlock(child);
  // Its parent, which goes on having it in its list, is no longer the one that marks lead to.
  if (block.parent != nullptr && block.parent != &parent) Drop(*block.parent);
  auto& index = NItemAccess::GetBlock(parent).boxIndex;
  if (!index) return;
  if (block.parent != &parent) {
    index.reset();
    return;
  }
  index->Leave(block.indexLeaf);
  index->Mark(block.indexLeaf);
  index->m_leaves[block.indexLeaf].child = nullptr;
}

void NChildIndex::OnChange(Item const& child) noexcept {
  auto const& block = NItemAccess::GetBlock(child);
  if (block.parent == nullptr) return;
  auto const& index = NItemAccess::GetBlock(*block.parent).boxIndex;
  if (index) index->Mark(block.indexLeaf);
}

std::uint32_t NChildIndex::AddLeaf(Item const& child, std::uint64_t order) {
  std::uint32_t made = m_firstFree;
  if (made != kNone) {
    m_firstFree = m_leaves[made].next;
  } else {
    made = static_cast<std::uint32_t>(m_leaves.size());
    m_leaves.emplace_back();
  }
  m_leaves[made] = {&child, order, kNone, 0};
  Mark(made);
  return made;
}

/// Gives the children new numbers in the order of the list.
/// Requires: the parent links of all lead back here.
void NChildIndex::Renumber() noexcept {
  std::uint64_t order = kFirstOrder;
  for (auto const& child : m_parent.GetChildren()) {
    m_leaves[NItemAccess::GetBlock(*child).indexLeaf].order = order += kGap;
  }
}

void NChildIndex::CheckSilentWrites() noexcept {
  auto const count = core::attribute::detail::GetSilentWriteCount();
  if (std::exchange(m_silentWrites, count) == count) return;
  for (Leaf const& leaf : m_leaves) {
    if (leaf.child == nullptr || leaf.kind == NKind::kNew) continue;
    auto const& block = NItemAccess::GetBlock(*leaf.child);
    if (block.AN_IS_VISIBLE.Get() != leaf.isVisible ||
        block.AN_TRANSFORM_IS_ABSOLUTE.Get() != leaf.isAbsolute) {
      Mark(static_cast<std::uint32_t>(&leaf - m_leaves.data()));
    }
  }
}

void NChildIndex::AppendUnsettled(std::vector<Child>& children) const {
  auto const append = [&](std::uint32_t leaf) {
    if (m_leaves[leaf].child != nullptr) {
      children.push_back({m_leaves[leaf].order, m_leaves[leaf].child});
    }
  };
  for (std::uint32_t leaf = m_firstStale; leaf != kNone; leaf = m_leaves[leaf].next) append(leaf);
  for (std::uint32_t const leaf : m_recomputed) {
    if (!m_leaves[leaf].isStale) append(leaf);
  }
}

NChildIndex::List* NChildIndex::GetList(NKind kind) noexcept {
  return kind == NKind::kMet ? &m_met : kind == NKind::kRecomputed ? &m_recomputed : nullptr;
}

/// Takes a leaf out of where it is.
void NChildIndex::Leave(std::uint32_t leaf) noexcept {
  NKind const kind = std::exchange(m_leaves[leaf].kind, NKind::kNew);
  if (kind == NKind::kPlaced) m_boxes.Remove(leaf);
  if (List* const list = GetList(kind)) {
    std::uint32_t const place = m_leaves[leaf].place;
    (*list)[place] = list->back();
    m_leaves[(*list)[place]].place = place;
    list->pop_back();
  }
}

void NChildIndex::Enter(std::uint32_t leaf, State const& state) {
  if (state.kind == NKind::kPlaced) {
    auto const entry = NBoxHierarchy::MakeEntry(state.box, state.reach, leaf);
    if (m_leaves[leaf].kind == NKind::kPlaced) {
      m_leaves[leaf].kind = NKind::kNew;  // while memory may run out
      m_boxes.Move(entry);
    } else {
      Leave(leaf);
      m_boxes.Insert(entry);
    }
  } else if (state.kind != m_leaves[leaf].kind) {
    Leave(leaf);
    if (List* const list = GetList(state.kind)) {
      m_leaves[leaf].place = static_cast<std::uint32_t>(list->size());
      list->push_back(leaf);
    }
  }
  m_leaves[leaf].kind = state.kind;
}

/// Whether what the child is now can be taken over.
bool NChildIndex::IsReady(Leaf const& leaf) const noexcept {
  auto const& block = NItemAccess::GetBlock(*leaf.child);
  if (block.parent != &m_parent || !block.AN_IS_VISIBLE.Get()) return true;
  return block.AN_TRANSFORM_IS_ABSOLUTE.Get() || (!block.isBoxDirty && !block.isBeingBoxed);
}

/// Takes over the culling boxes of a parent whose box is clean; the other children stay stale.
void NChildIndex::Adopt() {
  std::vector<NBoxHierarchy::Entry> fresh;
  fresh.reserve(m_leaves.size());
  m_firstStale = kNone;
  for (Leaf& leaf : m_leaves) {
    auto const at = static_cast<std::uint32_t>(&leaf - m_leaves.data());
    auto const& block = NItemAccess::GetBlock(*leaf.child);
    auto const& culling = block.cullingBox;
    float const reach = culling.conditionNumber * culling.extent;
    leaf.isVisible = block.AN_IS_VISIBLE.Get();
    leaf.isAbsolute = block.AN_TRANSFORM_IS_ABSOLUTE.Get();
    leaf.isStale = false;
    if (block.parent != &m_parent || !leaf.isVisible || leaf.isAbsolute ||
        !(culling.conditionNumber > 0 && reach <= kLargestReach)) {
      Mark(at);
      continue;
    }
    fresh.push_back(NBoxHierarchy::MakeEntry(culling.box, reach, at));
    leaf.kind = NKind::kPlaced;
    m_conditionNumber = std::max(m_conditionNumber, culling.conditionNumber);
    m_hasNegativeZeros = m_hasNegativeZeros || HasNegativeZero(culling.box);
  }
  m_boxes.Build(fresh);
  NItemAccess::NoteCleaning();
}

/// Reads the child, and leaves its culling box as the plain walk does.
NChildIndex::State NChildIndex::Evaluate(Leaf& leaf) {
  Item const& child = *leaf.child;
  auto& block = NItemAccess::GetBlock(child);
  wchar_t const* const type = child.GetSceneGraphItemType();
  bool const culls = type == SGIT_GROUP || (type == SGIT_MODEL && block.children.empty());
  leaf.isVisible = block.AN_IS_VISIBLE.Get();
  leaf.isAbsolute = block.AN_TRANSFORM_IS_ABSOLUTE.Get();
  if (block.parent != &m_parent) return {NKind::kRecomputed, {}, 0};
  // No ray looks at these. At all others it does, also at hidden ones: a listener may show them
  // before it comes to them.
  NKind const boxless = type == SGIT_LIGHT || type == SGIT_CAMERA ? NKind::kAbsent : NKind::kMet;
  if (!leaf.isVisible) return {boxless, {}, 0};
  if (leaf.isAbsolute) return {NKind::kRecomputed, {}, 0};
  VX_Math::Matrix const& local = child.GetTransform();
  Box3 box = block.box;
  box.Transform(local);
  float const conditionNumber = culls ? GetConditionNumber(local) : 0;
  block.cullingBox = {box, conditionNumber, GetExtent(box, local)};
  if (box.IsEmpty()) return {boxless, {}, 0};
  float const reach = conditionNumber * block.cullingBox.extent;
  bool const isBounded = conditionNumber > 0 && reach <= kLargestReach;
  if (isBounded) m_conditionNumber = std::max(m_conditionNumber, conditionNumber);
  m_hasNegativeZeros = m_hasNegativeZeros || HasNegativeZero(box);
  return {NKind::kPlaced, box, isBounded ? reach : std::numeric_limits<float>::infinity()};
}

void NChildIndex::Settle() {
  if (m_firstStale == kNone) return;
  List batch;
  for (std::uint32_t at = m_firstStale; at != kNone; at = m_leaves[at].next) batch.push_back(at);
  m_firstStale = kNone;
  std::vector<NBoxHierarchy::Entry> fresh;
  // What comes in a crowd is put in together.
  bool const isBulk = m_boxes.IsEmpty();
  // From here on a mark walks up to the leaf again.
  NItemAccess::NoteCleaning();
  for (std::size_t i = 0; i != batch.size(); ++i) {
    for (int step = 0; step != 3; ++step) {
      std::size_t const ahead = i + static_cast<std::size_t>(3 - step) * kAhead;
      if (ahead < batch.size()) m_boxes.Prefetch(batch[ahead], step);
    }
    std::uint32_t const at = batch[i];
    Leaf& leaf = m_leaves[at];
    leaf.isStale = false;
    if (leaf.child == nullptr) {
      leaf.next = std::exchange(m_firstFree, at);
    } else if (!IsReady(leaf)) {
      Leave(at);
      Mark(at);
    } else {
      State const state = Evaluate(leaf);
      if (isBulk && state.kind == NKind::kPlaced) {
        Leave(at);
        fresh.push_back(NBoxHierarchy::MakeEntry(state.box, state.reach, at));
        leaf.kind = state.kind;
      } else {
        Enter(at, state);
        if (m_boxes.IsDegraded()) Rebuild();
      }
    }
  }
  if (isBulk && !fresh.empty()) m_boxes.Build(fresh);
}

/// Builds the hierarchy of its boxes anew.
void NChildIndex::Rebuild() {
  std::vector<NBoxHierarchy::Entry> entries;
  m_boxes.AppendEntries(entries);
  m_boxes.Build(entries);
}

bool NChildIndex::FindMet(NCullingBound const& bound, std::vector<Child>& children) const {
  children.clear();
  if (m_met.size() + m_recomputed.size() > kSome + m_leaves.size() / 4) return false;
  AppendUnsettled(children);
  if (children.size() > kSome + m_leaves.size() / 4) return false;
  auto const append = [&](std::uint32_t leaf) {
    if (!m_leaves[leaf].isStale) children.push_back({m_leaves[leaf].order, m_leaves[leaf].child});
  };
  for (std::uint32_t const leaf : m_met) append(leaf);
  m_boxes.FindMet(bound.GetRay(m_conditionNumber), append);
  // What a visit reads comes from everywhere; so it comes at once.
  for (Child const& child : children) __builtin_prefetch(child.item);
  for (Child const& child : children) {
    NItemAccess::Prefetch(*child.item);
  }
  std::erase_if(children, [&](Child const& child) { return !bound.MayMeet(*child.item); });
  std::sort(children.begin(), children.end(),
            [](Child const& a, Child const& b) { return a.order > b.order; });
  return true;
}

}  // namespace corvanta::data::domain::scenegraph::detail
