#pragma once

#include <bit>
#include <cstdint>
#include <limits>
#include <vector>

#include "corvanta/export.h"
#include "corvanta/vx_math/Box3.h"
#include "corvanta/vx_math/detail/float4.h"

namespace corvanta::data::domain::scenegraph::detail {

/// Boxes in a bounding volume hierarchy of four children a node, which grow, move, come and go.
///
/// A box carries a reach: how far a ray may pass it and still meet it, in multiples of a number
/// that the ray brings. Infinite: every ray meets it. Boxes keep their place in the hierarchy while
/// their node's box grows little, and are put in anew otherwise.
class CORVANTA_API NBoxHierarchy {
 public:
  using Float4 = VX_Math::detail::Float4;

  /// Requires: no box is empty, and `leaf` is below 2^29, one number a box.
  struct Entry {
    Float4 min, max;  // the last lane is free
    float reach;
    std::uint32_t leaf;
  };
  static Entry MakeEntry(VX_Math::Box3 const& box, float reach, std::uint32_t leaf) noexcept {
    return {Float4{box.min.x, box.min.y, box.min.z, 0}, Float4{box.max.x, box.max.y, box.max.z, 0},
            reach, leaf};
  }

  /// A ray, and how far boxes are grown for it: `margin`, and `scale` times their reach.
  struct Ray {
    VX_Math::Vec3 origin;
    VX_Math::Vec3 inverse;  // of the direction, a component each
    float margin;
    float scale;
  };

  /// Replaces all that is there.
  /// Fails: throws bad_alloc, and nothing is there.
  void Build(std::vector<Entry>& entries);
  /// Cost: two levels a factor of four, as in the next two.
  /// Fails: throws bad_alloc without a change.
  void Insert(Entry const& entry);
  /// Gives a leaf that is there another box.
  /// Fails: throws bad_alloc; then the leaf isn't there any more.
  void Move(Entry const& entry);
  /// Requires: the leaf is there.
  void Remove(std::uint32_t leaf) noexcept;

  /// Asks the memory for what a move of the leaf will read, in three steps some time apart: its
  /// place, its node, the node above.
  void Prefetch(std::uint32_t leaf, int step) const noexcept {
    if (leaf >= m_places.size()) return;
    if (step == 0) return __builtin_prefetch(&m_places[leaf]);
    std::uint32_t place = m_places[leaf];
    if (place == kNone) return;
    if (step == 1) __builtin_prefetch(&m_parents[place / 4]);
    if (step == 2) place = m_parents[place / 4];
    if (place == kNone) return;
    auto const* const node = reinterpret_cast<char const*>(&m_nodes[place / 4]);
    __builtin_prefetch(node);
    __builtin_prefetch(node + 64);
  }
  bool IsEmpty() const noexcept { return m_count == 0; }
  /// What contains all boxes; the box of a default constructor without any.
  VX_Math::Box3 GetBox() const noexcept;
  /// The leaves with their boxes.
  void AppendEntries(std::vector<Entry>& entries) const;
  /// Whether edits have made it so much worse that building it anew pays.
  bool IsDegraded() const noexcept;

  /// Calls `visit(leaf)` for every box that the ray may meet, and for others that it doesn't.
  template <class Visit>
  void FindMet(Ray const& ray, Visit const& visit) const;

 private:
  struct alignas(64) Node {
    Float4 sides[2][3];  // the least coordinates, and the greatest
    Float4 reach;
    std::uint32_t children[4];  // a node, with kLeaf a leaf, or kNone
  };
  struct Bounds {
    Float4 min, max;
    float reach;
  };
  struct Range;
  class Builder;

  static constexpr std::uint32_t kLeaf = 1u << 31;
  static constexpr std::uint32_t kNone = ~0u;
  /// What edits may make of the depth before a rebuild. A node leaves three siblings on the stack.
  static constexpr unsigned kDeepest = 120;
  static constexpr unsigned kStackSize = 512;

  std::uint32_t AddNode(std::uint32_t place);
  static void Set(Node& node, unsigned lane, Bounds const& bounds) noexcept;
  static Bounds GetLane(Node const& node, unsigned lane) noexcept;
  static Bounds Unite(Node const& node) noexcept;
  void Climb(std::uint32_t node) noexcept;

  std::vector<Node> m_nodes;             // the root is the first
  std::vector<std::uint32_t> m_parents;  // of a node: the place it has
  std::vector<std::uint32_t> m_places;   // of a leaf: four times its node, and its lane
  std::size_t m_count = 0;
  std::size_t m_editCount = 0;  // since it was built
  double m_cost = 0;            // the half areas of all nodes
  double m_builtCost = 0;
  bool m_isDeep = false;
};

template <class Visit>
void NBoxHierarchy::FindMet(Ray const& ray, Visit const& visit) const {
  using namespace VX_Math::detail;
  if (m_nodes.empty()) return;
  Float4 origin[3], inverse[3];
  Int4 outward[3];   // the sign by which the near side moves out
  unsigned near[3];  // the side that the ray meets first
  for (int axis = 0; axis != 3; ++axis) {
    origin[axis] = Spread(ray.origin[axis]);
    inverse[axis] = Spread(ray.inverse[axis]);
    near[axis] = std::bit_cast<std::uint32_t>(ray.inverse[axis]) >> 31;
    outward[axis] = Int4{} + (near[axis] == 0 ? std::numeric_limits<std::int32_t>::min() : 0);
  }
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  std::uint32_t stack[kStackSize];
  unsigned depth = 0;
  std::uint32_t at = 0;
  for (;;) {
    Node const& node = m_nodes[at];
    Float4 const margin = ray.margin + ray.scale * node.reach;
    Float4 enter = Spread(-kInfinity);
    Float4 leave = Spread(kInfinity);
    for (int axis = 0; axis != 3; ++axis) {
      auto const out = reinterpret_cast<Float4>(reinterpret_cast<Int4>(margin) ^ outward[axis]);
      Float4 const t0 = (node.sides[near[axis]][axis] + out - origin[axis]) * inverse[axis];
      Float4 const t1 = (node.sides[near[axis] ^ 1][axis] - out - origin[axis]) * inverse[axis];
      // What isn't a number, 0 times infinity, narrows nothing.
      enter = Max(t0, enter);
      leave = Min(t1, leave);
    }
    unsigned mask = GetMask((enter <= leave) & (leave >= 0.0f));
    for (; mask != 0; mask &= mask - 1) {
      std::uint32_t const child = node.children[std::countr_zero(mask)];
      if (child == kNone) continue;
      if (child & kLeaf) {
        visit(child & ~kLeaf);
      } else {
        stack[depth++] = child;
        __builtin_prefetch(&m_nodes[child]);
        __builtin_prefetch(reinterpret_cast<char const*>(&m_nodes[child]) + 64);
      }
    }
    if (depth == 0) return;
    at = stack[--depth];
  }
}

}  // namespace corvanta::data::domain::scenegraph::detail
