#include "corvanta/data/operators/projector/NTriplanarProjector.h"

#include "corvanta/data/operators/projector/detail/formulas.h"
#include "corvanta/data/operators/projector/detail/tangent_frame.h"
#include "corvanta/data/operators/projector/detail/vertex_passes.h"

namespace corvanta::data::domain::operators::projector {

namespace detail = data::operators::projector::detail;

NTriplanarProjector::~NTriplanarProjector() = default;

void NTriplanarProjector::ProjectWithNormal(float x, float y, float z, float nx, float ny, float nz,
                                            float& u, float& v, float& w) const {
  structs::UVW const uvw = detail::ProjectByTriplanar({x, y, z}, {nx, ny, nz});
  u = uvw.u;
  v = uvw.v;
  w = uvw.w;
}

void NTriplanarProjector::ComputeTangentFrame(float, float, float, float nx, float ny, float nz,
                                              float& tx, float& ty, float& tz, float& bx, float& by,
                                              float& bz) const {
  detail::GetTriplanarFrame({nx, ny, nz}, detail::NormalizeExactly).CopyTo(tx, ty, tz, bx, by, bz);
}

void NTriplanarProjector::ProjectVertices(data::operators::projector::NVertices const& vertices,
                                          structs::UVW* coords) const {
  detail::ProjectInBlocks(*this, detail::ProjectTriplanarBlock, vertices, coords);
}

void NTriplanarProjector::ComputeTangentFrames(
    data::operators::projector::NVertices const& vertices, VX_Math::Matrix const& toModel,
    structs::XYZ* tangents, structs::XYZ* binormals) const {
  detail::ComputeFramesInBlocks(*this, detail::ComputeTriplanarFrames, vertices, toModel, tangents,
                                binormals);
}

}  // namespace corvanta::data::domain::operators::projector
