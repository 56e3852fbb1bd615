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
  detail::GetPlaneFrame({nx, ny, nz}).CopyTo(tx, ty, tz, bx, by, bz);
}

void NPlaneProjector::ProjectVertices(data::operators::projector::NVertices const& vertices,
                                      structs::UVW* coords) const {
  detail::ProjectInBlocks(*this, detail::ProjectPlaneBlock, vertices, coords);
}

}  // namespace corvanta::data::domain::operators::projector
