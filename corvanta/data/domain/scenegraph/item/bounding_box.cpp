#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/data/domain/scenegraph/detail/culling_bound.h"
#include "corvanta/data/domain/scenegraph/detail/item_access.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"
#include "corvanta/data/domain/scenegraph/item/detail/block.h"
#include "corvanta/data/domain/scenegraph/item/detail/shown_root.h"

namespace corvanta::data::domain::scenegraph::item {

using scenegraph::detail::NChildIndex;
using VX_Math::Box3;
using VX_Math::Matrix;

namespace {

/// Grows whenever a box anywhere becomes clean, or an item gets one more container that may be
/// clean. While it stands, all that contains a marked item is marked.
std::atomic<std::uint64_t> g_cleanEpoch{1};

constexpr std::size_t kAhead = 6;  // items between asking the memory and the use

}  // namespace

void NSceneGraphItemNode::NoteCleaning() noexcept {
  g_cleanEpoch.fetch_add(1, std::memory_order_relaxed);
}

void NSceneGraphItemNode::DirtyBoundingBox() noexcept {
  // A dirty item may stand below a clean parent, so that being dirty ends no walk; having been
  // marked by a walk in the present clean epoch does. It also makes each item be visited once a
  // walk: two references a level would double the visits at every level.
  std::uint64_t const cleanEpoch = g_cleanEpoch.load(std::memory_order_relaxed);
  // The way on is a chain through the blocks, so that marking needs no memory.
  Block* first = nullptr;
  auto const mark = [&first, cleanEpoch](NSceneGraphItemNode const& item) {
    Block& block = *item.m_block;
    if (block.isBoxDirty && block.markedAt == cleanEpoch) return;
    block.isBoxDirty = true;
    block.cullingBox.conditionNumber = 0;
    block.markedAt = cleanEpoch;
    block.nextMarked = std::exchange(first, &block);
  };
  mark(*this);
  while (first != nullptr) {
    Block& block = *std::exchange(first, first->nextMarked);
    if (block.parent != nullptr) {
      mark(*block.parent);
      if (auto const& index = block.parent->m_block->boxIndex) index->Mark(block.indexLeaf);
    }
    for (auto const& referrer : block.referrers) {
      if (!referrer.weak->IsExpired()) mark(*referrer.item);
    }
  }
}

/// Computes the dirty boxes of a subtree from the leaves up, without recursion.
///
/// An item is entered, then its dirty visible children in list order, then the root that it shows
/// if it is a reference, then it is computed: what its box is made of is clean by then. What the
/// walk is in already is skipped and adds nothing: the item met twice through two lists,
/// the tree that shows itself.
struct NSceneGraphItemNode::BoxWalk {
  struct Frame {
    boost::intrusive_ptr<NSceneGraphItemNode const> item;  // null: not counted, the caller's
    NSceneGraphItemNode const* node;
    Matrix accumulated;
    std::size_t firstPending;  // of this item's children
    bool mayShow;              // a reference whose shown root wasn't looked at yet
    bool isShown;              // a root that a reference shows; the last of `shownBases` is its own
  };

  explicit BoxWalk(Matrix const& controlTransform) : outermostBase(controlTransform) {}
  BoxWalk(BoxWalk const&) = delete;
  BoxWalk& operator=(BoxWalk const&) = delete;
  ~BoxWalk() {
    for (Frame const& frame : frames) {
      frame.node->m_block->isBeingBoxed = false;
      frame.node->m_block->isBoxDirty = true;
    }
  }

  static bool NeedsBox(NSceneGraphItemNode const& item) {
    return item.m_block->isBoxDirty && !item.m_block->isBeingBoxed;
  }
  static bool IsWanted(NSceneGraphItemNode const& child) {
    return NeedsBox(child) && child.m_block->AN_IS_VISIBLE.Get();
  }

  void Enter(NSceneGraphItemNode const& item, boost::intrusive_ptr<NSceneGraphItemNode const> held,
             Matrix const& accumulated, bool isShown = false) {
    bool const isReference = item.GetSceneGraphItemType() == SGIT_REFERENCE;
    frames.push_back({std::move(held), &item, accumulated, pending.size(), isReference, isShown});
    item.m_block->isBeingBoxed = true;
    item.m_block->box = Box3();
    // A mark that comes from here on, from a listener, stays.
    item.m_block->isBoxDirty = false;
    NoteCleaning();
    // The next one to be entered is the last.
    if (NChildIndex* const index = item.m_block->boxIndex.get()) {
      index->CheckSilentWrites();
      for (auto const& child : FindWanted(*index)) pending.emplace_back(child.item);
      return;
    }
    Children const& children = item.m_block->children;
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      if (IsWanted(**child)) pending.push_back(*child);
    }
  }

  /// The children of an item with an index whose boxes are to be computed, the last of the list
  /// first.
  std::vector<NChildIndex::Child> const& FindWanted(NChildIndex const& index) {
    wanted.clear();
    index.AppendUnsettled(wanted);
    std::erase_if(wanted, [](auto const& child) { return !IsWanted(*child.item); });
    std::sort(wanted.begin(), wanted.end(),
              [](auto const& a, auto const& b) { return a.order > b.order; });
    return wanted;
  }

  /// Extends `box` by the children of `item` through its index.
  /// Fails: false, and no change, where the children are to be looked at one by one.
  static bool ExtendByIndex(NSceneGraphItemNode const& item, Box3& box, Matrix const& accumulated,
                            Matrix const& base) {
    NChildIndex* const index = NChildIndex::UseForBox(item);
    if (index == nullptr) return false;
    try {
      std::vector<NChildIndex::Child> unsettled;
      index->AppendUnsettled(unsettled);
      // A listener has dirtied a child since the walk passed it.
      for (auto const& child : unsettled) {
        if (IsWanted(*child.item)) return false;
      }
      index->Settle();
    } catch (std::bad_alloc const&) {
      NChildIndex::Drop(item);
      return false;
    }
    Box3 all = box;
    all.ExtendBy(index->GetBox());
    bool hasNegativeZeros = index->HasNegativeZeros() || NChildIndex::HasNegativeZero(box);
    for (std::uint32_t const leaf : index->GetRecomputed()) {
      Box3 childBox;
      item.ExtendByChild(childBox, index->GetChild(leaf), accumulated, base);
      hasNegativeZeros = hasNegativeZeros || NChildIndex::HasNegativeZero(childBox);
      all.ExtendBy(childBox);
    }
    // Of two zeros the first of the list counts.
    if (hasNegativeZeros && HasZero(all)) return false;
    box = all;
    return true;
  }

  static bool HasZero(Box3 const& box) {
    return box.min.x == 0 || box.min.y == 0 || box.min.z == 0 || box.max.x == 0 || box.max.y == 0 ||
           box.max.z == 0;
  }

  void EnterChild(boost::intrusive_ptr<NSceneGraphItemNode const> child) {
    if (!IsWanted(*child)) return;
    Matrix const& local = child->GetTransform();
    Matrix const accumulated =
        local * (child->TransformIsAbsolute() ? GetBase() : frames.back().accumulated);
    NSceneGraphItemNode const& item = *child;
    Enter(item, std::move(child), accumulated);
  }

  void EnterShownRoot() {
    frames.back().mayShow = false;
    auto const& reference = static_cast<NSceneGraphReferenceNode const&>(*frames.back().node);
    detail::ShownRoot const shown =
        detail::FindShownRoot(reference, frames.back().accumulated, GetBase());
    if (!shown.item || !NeedsBox(*shown.item)) return;
    shownBases.push_back(shown.base);
    Enter(*shown.item, shown.item, shown.accumulated, true);
  }

  void Run(NSceneGraphItemNode const& item, Matrix const& accumulated) {
    Enter(item, nullptr, accumulated);
    while (!frames.empty()) {
      if (pending.size() != frames.back().firstPending) {
        if (pending.size() > kAhead) {
          scenegraph::detail::NItemAccess::Prefetch(*pending[pending.size() - kAhead]);
        }
        auto child = std::move(pending.back());
        pending.pop_back();
        EnterChild(std::move(child));
      } else if (frames.back().mayShow) {
        EnterShownRoot();
      } else {
        Leave();
      }
    }
  }

  void Leave() {
    Frame const& frame = frames.back();
    Block& block = *frame.node->m_block;
    Box3 box;
    frame.node->CalculateBoundingBox(box, frame.accumulated, GetBase());
    block.box = box;
    block.isBeingBoxed = false;
    if (frame.isShown) shownBases.pop_back();
    frames.pop_back();
  }

  /// The control transform of the innermost tree.
  Matrix const& GetBase() const { return shownBases.empty() ? outermostBase : shownBases.back(); }

  Matrix const outermostBase;
  std::vector<Matrix> shownBases;  // of the trees shown on the way
  std::vector<Frame> frames;
  std::vector<boost::intrusive_ptr<NSceneGraphItemNode const>> pending;
  std::vector<NChildIndex::Child> wanted;  // within FindWanted and Enter
};

Box3 const& NSceneGraphItemNode::GetBoundingBox(Matrix const& accumulated,
                                                Matrix const& base) const {
  if (!BoxWalk::NeedsBox(*this)) return m_block->box;
  auto const held = core::reference_countable::Hold(*this);
  BoxWalk(base).Run(*this, accumulated);
  if (!held || !held->IsHeldOnce()) return m_block->box;
  // A listener has dropped all else that held this item.
  thread_local Box3 last;
  return last = m_block->box;
}

void NSceneGraphItemNode::CalculateBoundingBox(Box3& box, Matrix const& accumulated,
                                               Matrix const& base) const {
  Children const& children = m_block->children;
  if (BoxWalk::ExtendByIndex(*this, box, accumulated, base)) return;
  if (std::none_of(children.begin(), children.end(),
                   [](auto const& child) { return BoxWalk::IsWanted(*child); })) {
    for (auto const& child : children) ExtendByChild(box, *child, accumulated, base);
    return;
  }
  // Something dirtied a child since the walk passed it. Its box may reach listeners, which may edit
  // the list.
  Children const snapshot(children);
  for (auto const& child : snapshot) ExtendByChild(box, *child, accumulated, base);
}

void NSceneGraphItemNode::ExtendByChild(Box3& box, NSceneGraphItemNode const& child,
                                        Matrix const& accumulated, Matrix const& base) const {
  if (!child.IsVisible()) return;
  Matrix const& local = child.GetTransform();
  if (child.TransformIsAbsolute()) {
    Matrix const global = local * base;
    Box3 childBox = child.GetBoundingBox(global, base);
    childBox.Transform(global * accumulated.Inverse());
    box.ExtendBy(childBox);
    return;
  }
  // A clean box needs no matrix.
  Box3 childBox = child.m_block->isBoxDirty ? child.GetBoundingBox(local * accumulated, base)
                                            : child.m_block->box;
  childBox.Transform(local);
  box.ExtendBy(childBox);
  // A pick may judge by this box what it would test the child's own box for, and nothing below.
  wchar_t const* const type = child.GetSceneGraphItemType();
  bool const culls = type == SGIT_GROUP || (type == SGIT_MODEL && child.m_block->children.empty());
  child.m_block->cullingBox = {childBox, culls ? scenegraph::detail::GetConditionNumber(local) : 0,
                               scenegraph::detail::GetExtent(childBox, local)};
}

}  // namespace corvanta::data::domain::scenegraph::item
