#include "corvanta/vx_tess/NurbsBasis.h"

#include <algorithm>
#include <cmath>

namespace VX_Tess {

bool NurbsBasis::IsValid() const noexcept {
  if (order < 2 || knots.size() / 2 < order) return false;
  for (std::size_t i = 0; i != knots.size(); ++i) {
    if (!std::isfinite(knots[i])) return false;
    if (i != 0 && knots[i] < knots[i - 1]) return false;
    if (i >= order && knots[i] == knots[i - order]) return false;
  }
  return true;
}

bool AreValidWeights(std::vector<double> const& weights, std::size_t controlPointCount) noexcept {
  if (weights.empty()) return true;
  return weights.size() == controlPointCount &&
         std::all_of(weights.begin(), weights.end(),
                     [](double weight) { return std::isfinite(weight) && weight > 0.0; });
}

}  // namespace VX_Tess
