#include "corvanta/data/operators/projector/NSphereProjector.h"

#include "corvanta/data/operators/projector/detail/formulas.h"
#include "corvanta/data/operators/projector/detail/tangent_frame.h"
#include "corvanta/data/operators/projector/detail/vertex_passes.h"

namespace corvanta::data::domain::operators::projector {

namespace detail = data::operators::projector::detail;

NSphereProjector::~NSphereProjector() = default;

bool NSphereProjector::HasSeam() const { return true; }

void NSphereProjector::ProjectPoint(float x, float y, float z, float& u, float& v, float& w) const {
  float const radius = detail::GetLength(x, z);
  structs::UVW const uvw =
      detail::ProjectOntoSphere({x, y, z}, detail::GetAngle(-x, z), detail::GetAngle(radius, y));
  u = uvw.u;
  v = uvw.v;
  w = uvw.w;
}

void NSphereProjector::ComputeTangentFrame(float x, float, float z, float nx, float ny, float nz,
                                           float& tx, float& ty, float& tz, float& bx, float& by,
                                           float& bz) const {
  detail::GetRoundFrame(x, z, {nx, ny, nz}, detail::NormalizeExactly)
      .CopyTo(tx, ty, tz, bx, by, bz);
}

void NSphereProjector::ProjectVertices(data::operators::projector::NVertices const& vertices,
                                       structs::UVW* coords) const {
  detail::ProjectInBlocks(*this, detail::ProjectSphereBlock, vertices, coords);
}

void NSphereProjector::ComputeTangentFrames(data::operators::projector::NVertices const& vertices,
                                            VX_Math::Matrix const& toModel, structs::XYZ* tangents,
                                            structs::XYZ* binormals) const {
  detail::ComputeFramesInBlocks(*this, detail::ComputeRoundFrames, vertices, toModel, tangents,
                                binormals);
}

}  // namespace corvanta::data::domain::operators::projector
