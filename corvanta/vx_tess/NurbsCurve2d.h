#pragma once

#include <vector>

#include "corvanta/vx_math/Vec2.h"
#include "corvanta/vx_tess/NurbsBasis.h"
#include "corvanta/vx_tess/TessNode.h"

namespace VX_Tess {

/// A rational curve in the parameter plane of a surface; a piece of a trim loop. A new one is
/// empty.
class CORVANTA_API NurbsCurve2d : public TessNode {
 public:
  NurbsCurve2d();
  ~NurbsCurve2d() override;

  /// Replaces the curve. Without `weights` every control point weighs 1.
  /// Fails: false, and no change, for an invalid basis, and unless there are as many points, and as
  /// many weights if any, as it asks for.
  bool SetGeometry(NurbsBasis const& basis, std::vector<VX_Math::Vec2> const& controlPoints,
                   std::vector<double> const& weights = {});
  /// Makes the curve empty.
  void ClearGeometry() noexcept;

  NurbsBasis const& GetBasis() const noexcept { return m_basis; }
  std::vector<VX_Math::Vec2> const& GetControlPoints() const noexcept { return m_controlPoints; }
  /// Empty where all control points weigh 1.
  std::vector<double> const& GetWeights() const noexcept { return m_weights; }

  /// A new curve, with a count of 0.
  NurbsCurve2d* Clone() const;

 private:
  NurbsCurve2d(NurbsCurve2d const& other);

  NurbsBasis m_basis;
  std::vector<VX_Math::Vec2> m_controlPoints;
  std::vector<double> m_weights;
};

}  // namespace VX_Tess
