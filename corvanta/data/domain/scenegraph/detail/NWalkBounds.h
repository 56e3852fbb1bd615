#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::scenegraph::detail {

/// What bounds a walk that follows references: its budget of visits, and the trees that it is in.
class CORVANTA_API NWalkBounds {
 public:
  /// With the budget as it is set now.
  NWalkBounds() noexcept;

  /// Fails: throws NSceneGraphWalkError beyond the budget.
  void Visit(std::uint64_t count = 1) {
    if (count > m_left) ThrowTooManyVisits();
    m_left -= count;
  }

  /// Cost: a look at each tree that the walk is in, a hash from some dozens on.
  /// Fails: false for a tree that the walk is in: one that shows itself is cut there.
  bool Enter(tree::NSceneGraphTreeNode const& tree);
  /// Leaves the tree entered last.
  void Leave() noexcept;
  std::size_t GetDepth() const noexcept { return m_trees.size(); }

 private:
  [[noreturn]] static void ThrowTooManyVisits();

  std::uint64_t m_left;
  std::vector<tree::NSceneGraphTreeNode const*> m_trees;           // outermost first
  std::unordered_set<tree::NSceneGraphTreeNode const*> m_indexed;  // those beyond the first dozens
};

/// For a recursion that references decide the depth of.
/// Fails: throws NSceneGraphWalkError when less than 256 KiB of the thread's stack are left, or a
/// quarter of a stack that is smaller than a MiB.
CORVANTA_API void RequireStack();

}  // namespace corvanta::data::domain::scenegraph::detail
