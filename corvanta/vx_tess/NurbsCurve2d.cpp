#include "corvanta/vx_tess/NurbsCurve2d.h"

#include <utility>

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

}  // namespace VX_Tess
