#pragma once

#include "corvanta/data/operators/projector/NProjector.h"

namespace corvanta::data::domain::operators::projector {

/// Projects from the origin outwards: u once around the axis y from the seam at negative z, v from
/// 0 at the pole of negative y to 1 at the other, w the distance from the origin.
class CORVANTA_API NSphereProjector : public data::operators::projector::NProjector {
 public:
  ~NSphereProjector() override;

  bool HasSeam() const override;
  void ProjectPoint(float x, float y, float z, float& u, float& v, float& w) const override;
  void ComputeTangentFrame(float x, float y, float z, float nx, float ny, float nz, float& tx,
                           float& ty, float& tz, float& bx, float& by, float& bz) const override;
  void ProjectVertices(data::operators::projector::NVertices const& vertices,
                       structs::UVW* coords) const override;
  void ComputeTangentFrames(data::operators::projector::NVertices const& vertices,
                            VX_Math::Matrix const& toModel, structs::XYZ* tangents,
                            structs::XYZ* binormals) const override;
};

}  // namespace corvanta::data::domain::operators::projector
