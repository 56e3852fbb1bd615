#include "corvanta/data/operators/projector/NCylinderProjector.h"

#include "corvanta/data/operators/projector/detail/formulas.h"
#include "corvanta/data/operators/projector/detail/tangent_frame.h"
#include "corvanta/data/operators/projector/detail/vertex_passes.h"

namespace corvanta::data::domain::operators::projector {

namespace detail = data::operators::projector::detail;

NCylinderProjector::~NCylinderProjector() = default;

bool NCylinderProjector::HasSeam() const { return true; }

void NCylinderProjector::ProjectPoint(float x, float y, float z, float& u, float& v,
                                      float& w) const {
  structs::UVW const uvw = detail::ProjectOntoCylinder({x, y, z}, detail::GetAngle(-x, z));
  u = uvw.u;
  v = uvw.v;
  w = uvw.w;
}

void NCylinderProjector::ComputeTangentFrame(float x, float, float z, float nx, float ny, float nz,
                                             float& tx, float& ty, float& tz, float& bx, float& by,
                                             float& bz) const {
  detail::GetRoundFrame(x, z, {nx, ny, nz}, detail::NormalizeExactly)
      .CopyTo(tx, ty, tz, bx, by, bz);
}

void NCylinderProjector::ProjectVertices(data::operators::projector::NVertices const& vertices,
                                         structs::UVW* coords) const {
  detail::ProjectInBlocks(*this, detail::ProjectCylinderBlock, vertices, coords);
}

void NCylinderProjector::ComputeTangentFrames(data::operators::projector::NVertices const& vertices,
                                              VX_Math::Matrix const& toModel,
                                              structs::XYZ* tangents,
                                              structs::XYZ* binormals) const {
  detail::ComputeFramesInBlocks(*this, detail::ComputeRoundFrames, vertices, toModel, tangents,
                                binormals);
}

}  // namespace corvanta::data::domain::operators::projector
