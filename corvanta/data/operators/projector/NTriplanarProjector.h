#pragma once

#include "corvanta/data/operators/projector/NProjector.h"

namespace corvanta::data::domain::operators::projector {

/// Projects along the axis that the normal is nearest to; of opposite faces, both get the same. u
/// and v are z and y, x and z, or y and x; w is how far out the point lies.
class CORVANTA_API NTriplanarProjector : public data::operators::projector::NProjector {
 public:
  ~NTriplanarProjector() override;

  void ProjectWithNormal(float x, float y, float z, float nx, float ny, float nz, float& u,
                         float& v, float& w) const override;
  void ComputeTangentFrame(float x, float y, float z, float nx, float ny, float nz, float& tx,
                           float& ty, float& tz, float& bx, float& by, float& bz) const override;
  void ProjectVertices(data::operators::projector::NVertices const& vertices,
                       structs::UVW* coords) const override;
  void ComputeTangentFrames(data::operators::projector::NVertices const& vertices,
                            VX_Math::Matrix const& toModel, structs::XYZ* tangents,
                            structs::XYZ* binormals) const override;
};

}  // namespace corvanta::data::domain::operators::projector
