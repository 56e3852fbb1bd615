#include "corvanta/vx_tess/NurbsCurve2d.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "corvanta/vx_tess/NurbsBasis.h"

namespace VX_Tess {

NurbsCurve2d::NurbsCurve2d() = default;

NurbsCurve2d::NurbsCurve2d(NurbsCurve2d const&) = default;

NurbsCurve2d::~NurbsCurve2d() = default;

bool NurbsCurve2d::SetGeometry(NurbsBasis const& basis,
                               std::vector<VX_Math::Vec2> const& controlPoints,
                               std::vector<double> const& weights) {
  if (!basis.IsValid() || controlPoints.size() != basis.GetControlPointCount() ||
      !AreValidWeights(weights, controlPoints.size())) {
    return false;
  }
  auto newBasis = basis;
  auto newControlPoints = controlPoints;
  auto newWeights = weights;
  m_basis = std::move(newBasis);
  m_controlPoints = std::move(newControlPoints);
  m_weights = std::move(newWeights);
  return true;
}

void NurbsCurve2d::ClearGeometry() noexcept {
  m_basis = NurbsBasis();
  m_controlPoints.clear();
  m_weights.clear();
}

NurbsCurve2d* NurbsCurve2d::Clone() const { return new NurbsCurve2d(*this); }

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
