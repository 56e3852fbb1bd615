#pragma once

#include <list>
#include <memory>
#include <vector>

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/vx_tess/NurbsCurve2d.h"
#include "corvanta/vx_tess/NurbsSurface.h"

namespace corvanta::data::domain::geometry {

/// How a file writer should save a NURBS surface; kept for it, and read by nobody here.
enum NNurbsSaveType : int { NNST_DEFAULT = 0 };

/// A surface that carries, beside its arrays, the free-form surface that they come from and its
/// trim loops. The arrays are the caller's to assign.
class CORVANTA_API NNurbsSurface : public NSurface {
 public:
  using TrimLoops = std::list<std::vector<boost::intrusive_ptr<VX_Tess::NurbsCurve2d>>>;

  NNurbsSurface();
  ~NNurbsSurface() override;

  /// Appends an empty loop and returns its index.
  unsigned int AddTrimLoop();
  /// Puts `curve` at the end of a loop, here and in the free-form surface.
  /// Raises: nothing.
  /// Fails: false, and no change, for a loop that isn't there; also if the free-form surface
  /// refuses the curve, which then stays in the loop.
  bool AddTrimCurve(unsigned int loop, VX_Tess::NurbsCurve2d& curve);
  TrimLoops const& GetTrimLoops() const noexcept;

  NNurbsSaveType GetNurbsSaveType() const noexcept;
  void SetNurbsSaveType(NNurbsSaveType type) noexcept;

  /// The free-form surface, to set up and to tessellate.
  VX_Tess::NurbsSurface& GetTessNurbsSurface() noexcept;
  VX_Tess::NurbsSurface const& GetTessNurbsSurface() const noexcept;

  /// The clone shares the curves of the loops; its free-form surface is a deep clone.
  boost::intrusive_ptr<NSurface> CloneSurface() const override;

 private:
  struct Block;

  void CopyTo(NNurbsSurface& target) const;

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::geometry
