#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "corvanta/data/domain/scenegraph/detail/NBoxHierarchy.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::scenegraph::detail {

class NCullingBound;

/// The boxes of an item's children in the item's frame, kept up to date by the marks that make
/// boxes dirty: an item with many children finds by it those that a ray may meet, and the union of
/// their boxes, without looking at all of them.
class CORVANTA_API NChildIndex {
 public:
  using Item = item::NSceneGraphItemNode;
  /// A child and its place in the order of the list.
  struct Child {
    std::uint64_t order;
    Item const* item;
  };

  static constexpr std::size_t kFewestChildren = 64;
  /// From how many children on an index is made from now on; the largest number: never, so that
  /// every walk is the plain one. For tests.
  static void SetFewestChildren(std::size_t count) noexcept;

  /// The index of `parent`, made at need.
  /// Cost: of making it some 0.2 us a child.
  /// Requires: the box of `parent` is clean.
  /// Fails: null for an item with fewer children, and without memory.
  static NChildIndex* UseForPick(Item const& parent) noexcept;
  /// The same for the item's box, from the second time on that it is computed.
  static NChildIndex* UseForBox(Item const& parent) noexcept;
  static void Drop(Item const& parent) noexcept;
  /// `child` has come into the list of `parent`, as its child, and stands between these two; null
  /// beyond the ends.
  static void OnInsert(Item const& parent, Item const& child, Item const* previous,
                       Item const* next) noexcept;
  /// `child` is about to leave the list of `parent`.
  static void OnRemove(Item const& parent, Item const& child) noexcept;
  /// `child`, or what its box is made of, has changed or may have.
  static void OnChange(Item const& child) noexcept;

  explicit NChildIndex(Item const& parent);
  NChildIndex(NChildIndex const&) = delete;
  NChildIndex& operator=(NChildIndex const&) = delete;

  /// The leaf with this number is out of date.
  /// Requires: the leaf is there.
  void Mark(std::uint32_t leaf) noexcept {
    Leaf& marked = m_leaves[leaf];
    if (marked.isStale) return;
    marked.isStale = true;
    marked.next = m_firstStale;
    m_firstStale = leaf;
  }

  /// Marks the children that a silent write has shown, hidden or made absolute or relative.
  /// Cost: a look at every child after such a write anywhere, nothing otherwise.
  void CheckSilentWrites() noexcept;
  /// Appends the children whose boxes may not be known, in any order: the stale ones, and those
  /// whose boxes are computed each time.
  void AppendUnsettled(std::vector<Child>& children) const;
  /// The children whose boxes are computed each time.
  std::vector<std::uint32_t> const& GetRecomputed() const noexcept { return m_recomputed; }
  Item const& GetChild(std::uint32_t leaf) const noexcept { return *m_leaves[leaf].child; }

  /// Takes over the boxes of the stale children, but for those that are being computed: they add
  /// nothing, and stay stale.
  /// Requires: the box of the parent is being computed, and those of its visible children have been.
  /// Fails: throws bad_alloc; drop the index then.
  void Settle();
  /// The union of what Settle took over, but for the signs of zeros: see HasNegativeZeros.
  VX_Math::Box3 GetBox() const noexcept { return m_boxes.GetBox(); }
  /// Whether some box has a coordinate of -0, so that the union may depend on the order.
  bool HasNegativeZeros() const noexcept { return m_hasNegativeZeros; }
  static bool HasNegativeZero(VX_Math::Box3 const& box) noexcept;

  /// Replaces `children` by those that `bound` lets through, the last of the list first.
  /// Cost: some 10 ns a node of the hierarchy along the ray, and a look at every hidden child and
  /// every one that culls nothing: references, and models with children.
  /// Fails: false where these are so many that a look at all is as good.
  bool FindMet(NCullingBound const& bound, std::vector<Child>& children) const;

 private:
  enum class NKind : unsigned char {
    kNew,         // nowhere yet
    kAbsent,      // nothing to a ray nor to the box
    kPlaced,      // in the hierarchy
    kMet,         // no box, and visited for every ray
    kRecomputed,  // visited for every ray, and its box is computed whenever the parent's is
  };
  struct Leaf {
    Item const* child;  // null: free, or to be
    std::uint64_t order;
    std::uint32_t next;   // stale leaf, or free one
    std::uint32_t place;  // in its list
    NKind kind = NKind::kNew;
    bool isStale = false;
    bool isVisible = false;
    bool isAbsolute = false;
  };
  struct State {
    NKind kind;
    VX_Math::Box3 box;
    float reach;
  };
  using List = std::vector<std::uint32_t>;

  static constexpr std::uint32_t kNone = ~0u;

  static NChildIndex* Use(Item const& parent, bool isForPick) noexcept;
  std::uint32_t AddLeaf(Item const& child, std::uint64_t order);
  void Renumber() noexcept;
  List* GetList(NKind kind) noexcept;
  void Leave(std::uint32_t leaf) noexcept;
  void Enter(std::uint32_t leaf, State const& state);
  void Adopt();
  bool IsReady(Leaf const& leaf) const noexcept;
  State Evaluate(Leaf& leaf);
  void Rebuild();

  Item const& m_parent;
  std::vector<Leaf> m_leaves;
  NBoxHierarchy m_boxes;
  List m_met, m_recomputed;
  std::uint32_t m_firstStale = kNone;
  std::uint32_t m_firstFree = kNone;
  std::uint64_t m_silentWrites;
  float m_conditionNumber = 1;  // the greatest of the children in the hierarchy
  bool m_hasNegativeZeros = false;
};

}  // namespace corvanta::data::domain::scenegraph::detail
