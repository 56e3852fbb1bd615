#include "corvanta/vx_tess/NurbsSurface.h"

#include <memory>
#include <utility>

#include "corvanta/vx_tess/TessNode.h"

namespace VX_Tess {

NurbsSurface::NurbsSurface() = default;

NurbsSurface::NurbsSurface(NurbsSurface const&) = default;

NurbsSurface::~NurbsSurface() = default;

void NurbsSurface::ClearGeometry() {
  m_basisU = NurbsBasis();
  m_basisV = NurbsBasis();
  m_controlPoints.clear();
  m_weights.clear();
  m_trimCurves.clear();
  ClearTessellation();
}

void NurbsSurface::ClearTessellation() {}

bool NurbsSurface::SetGeometry(NurbsBasis const& u, NurbsBasis const& v,
                               std::vector<VX_Math::Vec3> const& controlPoints,
                               std::vector<double> const& weights) {
  if (!u.IsValid() || !v.IsValid() ||
      controlPoints.size() != u.GetControlPointCount() * v.GetControlPointCount() ||
      !AreValidWeights(weights, controlPoints.size())) {
    return false;
  }
  auto newBasisU = u;
  auto newBasisV = v;
  auto newControlPoints = controlPoints;
  auto newWeights = weights;
  m_basisU = std::move(newBasisU);
  m_basisV = std::move(newBasisV);
  m_controlPoints = std::move(newControlPoints);
  m_weights = std::move(newWeights);
  ClearTessellation();
  return true;
}

int NurbsSurface::AppendTrimCurve(unsigned int loop, NurbsCurve2d* curve) {
  if (curve == nullptr) return 0;
  m_trimCurves[loop].emplace_back(curve);
  ClearTessellation();
  return 1;
}

NurbsSurface* NurbsSurface::Clone(bool isDeep) const {
  std::unique_ptr<NurbsSurface> clone(new NurbsSurface(*this));
  if (isDeep) {
    for (auto& [loop, curves] : clone->m_trimCurves) {
      for (auto& curve : curves) curve.reset(curve->Clone());
    }
  }
  return clone.release();
}

TessNode::~TessNode() = default;

}  // namespace VX_Tess
