#pragma once

#include <cstddef>
#include <vector>

#include "corvanta/export.h"
#include "corvanta/vx_tess/fwd.h"

namespace VX_Tess {

/// What blends the control points along one direction: the order, which is the degree and 1, and
/// the knots, as many as control points and the order together.
struct CORVANTA_API NurbsBasis {
  unsigned int order = 0;
  std::vector<double> knots;

  /// Whether the order is 2 at least, there are enough knots for as many control points as the
  /// order, and the knots are finite and ascending, none of them repeated more often than the order
  /// allows.
  bool IsValid() const noexcept;
  /// Requires: a valid basis.
  std::size_t GetControlPointCount() const noexcept { return knots.size() - order; }

  friend bool operator==(NurbsBasis const&, NurbsBasis const&) = default;
};

/// Whether `weights` suits so many control points: empty, where all weigh 1, or a positive finite
/// number for each.
CORVANTA_API bool AreValidWeights(std::vector<double> const& weights,
                                  std::size_t controlPointCount) noexcept;

}  // namespace VX_Tess
