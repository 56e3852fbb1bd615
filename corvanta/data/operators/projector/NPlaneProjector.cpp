#include "corvanta/data/operators/projector/NPlaneProjector.h"

#include "corvanta/data/operators/projector/detail/formulas.h"
#include "corvanta/data/operators/projector/detail/tangent_frame.h"
#include "corvanta/data/operators/projector/detail/vertex_passes.h"

namespace corvanta::data::domain::operators::projector {

namespace detail = data::operators::projector::detail;

NPlaneProjector::~NPlaneProjector() = default;

void NPlaneProjector::ProjectPoint(float x, float y, float z, float& u, float& v, float& w) const {
  structs::UVW const uvw = detail::ProjectOntoPlane({x, y, z});
  u = uvw.u;
  v = uvw.v;
  w = uvw.w;
}

void NPlaneProjector::ComputeTangentFrame(float, float, float, float nx, float ny, float nz,
                                          float& tx, float& ty, float& tz, float& bx, float& by,
                                          float& bz) const {
  detail::GetPlaneFrame({nx, ny, nz}, detail::NormalizeExactly).CopyTo(tx, ty, tz, bx, by, bz);
}

void NPlaneProjector::ProjectVertices(data::operators::projector::NVertices const& vertices,
                                      structs::UVW* coords) const {
  detail::ProjectInBlocks(*this, detail::ProjectPlaneBlock, vertices, coords);
}

void NPlaneProjector::ComputeTangentFrames(data::operators::projector::NVertices const& vertices,
                                           VX_Math::Matrix const& toModel, structs::XYZ* tangents,
                                           structs::XYZ* binormals) const {
  detail::ComputeFramesInBlocks(*this, detail::ComputePlaneFrames, vertices, toModel, tangents,
                                binormals);
}

}  // namespace corvanta::data::domain::operators::projector
