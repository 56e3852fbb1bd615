#pragma once

#include <cstdint>

#include "corvanta/export.h"

namespace corvanta::data::domain::scenegraph {

/// A tree that is shown twice in a tree that is shown twice is there four times, and twenty-six
/// such levels are 67 million showings. So a walk that meets each showing, a pick or a traversal,
/// has a budget of visits: each scene, tree and item that it enters is one, as often as it is
/// met. A record of a pick counts sixteen, and one for each of its check points.
///
/// Fails: beyond the budget the walk ends with NSceneGraphWalkError.
inline constexpr std::uint64_t kDefaultWalkBudget = 50'000'000;

/// The budget of each walk that starts from here on, in the whole process. It may be set and read
/// from any thread.
CORVANTA_API void SetWalkBudget(std::uint64_t visits) noexcept;
CORVANTA_API std::uint64_t GetWalkBudget() noexcept;

}  // namespace corvanta::data::domain::scenegraph
