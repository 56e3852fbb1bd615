#pragma once

#include <boost/intrusive_ptr.hpp>
#include <map>
#include <vector>

#include "corvanta/vx_math/Vec3.h"
#include "corvanta/vx_tess/NurbsBasis.h"
#include "corvanta/vx_tess/NurbsCurve2d.h"
#include "corvanta/vx_tess/TessNode.h"

namespace VX_Tess {

/// A rational free-form surface with its trim curves. A new one is empty.
///
/// It keeps what it is given. A tessellator derives from it and keeps its triangles until
/// ClearTessellation, which every change of the surface calls.
class CORVANTA_API NurbsSurface : public TessNode {
 public:
  using TrimCurves = std::vector<boost::intrusive_ptr<NurbsCurve2d>>;

  NurbsSurface();

  /// Makes the surface empty, without trim curves.
  virtual void ClearGeometry();
  /// Drops the triangles of a class that makes some.
  virtual void ClearTessellation();
  ~NurbsSurface() override;

  /// Replaces the surface; its trim curves stay. Without `weights` every control point weighs 1.
  /// Units: the control points row after row, a row running along u.
  /// Fails: false, and no change, for an invalid basis, and unless there are as many points, and as
  /// many weights if any, as both ask for together.
  bool SetGeometry(NurbsBasis const& u, NurbsBasis const& v,
                   std::vector<VX_Math::Vec3> const& controlPoints,
                   std::vector<double> const& weights = {});

  NurbsBasis const& GetBasisU() const noexcept { return m_basisU; }
  NurbsBasis const& GetBasisV() const noexcept { return m_basisV; }
  std::vector<VX_Math::Vec3> const& GetControlPoints() const noexcept { return m_controlPoints; }
  /// Empty where all control points weigh 1.
  std::vector<double> const& GetWeights() const noexcept { return m_weights; }

  /// Puts `curve` at the end of a loop, which comes into being with its first curve.
  /// Fails: 0, and no change, for a null curve.
  int AppendTrimCurve(unsigned int loop, NurbsCurve2d* curve);
  /// The trim curves by loop.
  std::map<unsigned int, TrimCurves> const& GetTrimCurves() const noexcept { return m_trimCurves; }

  /// A new surface, with a count of 0. A deep one has curves of its own, any other shares them.
  NurbsSurface* Clone(bool isDeep) const;

 protected:
  NurbsSurface(NurbsSurface const& other);

 private:
  NurbsBasis m_basisU;
  NurbsBasis m_basisV;
  std::vector<VX_Math::Vec3> m_controlPoints;
  std::vector<double> m_weights;
  std::map<unsigned int, TrimCurves> m_trimCurves;
};

}  // namespace VX_Tess
