#pragma once

#include "corvanta/data/operators/projector/NProjector.h"

namespace corvanta::data::domain::operators::projector {

/// Projects along y onto the plane of x and z: u is x, v is z. A tile spans one unit.
class CORVANTA_API NPlaneProjector : public data::operators::projector::NProjector {
 public:
  ~NPlaneProjector() override;

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
