#include "corvanta/data/operators/projector/NBoxProjector.h"

#include "corvanta/data/operators/projector/detail/formulas.h"
#include "corvanta/data/operators/projector/detail/tangent_frame.h"
#include "corvanta/data/operators/projector/detail/vertex_passes.h"

namespace corvanta::data::domain::operators::projector {

namespace detail = data::operators::projector::detail;

NBoxProjector::~NBoxProjector() = default;

void NBoxProjector::ProjectWithNormal(float x, float y, float z, float nx, float ny, float nz,
                                      float& u, float& v, float& w) const {
  structs::UVW const uvw = detail::ProjectByBox({x, y, z}, {nx, ny, nz});
  u = uvw.u;
  v = uvw.v;
  w = uvw.w;
}

void NBoxProjector::ComputeTangentFrame(float, float, float, float nx, float ny, float nz,
                                        float& tx, float& ty, float& tz, float& bx, float& by,
                                        float& bz) const {
  detail::GetBoxFrame({nx, ny, nz}, detail::NormalizeExactly).CopyTo(tx, ty, tz, bx, by, bz);
}

void NBoxProjector::ProjectVertices(data::operators::projector::NVertices const& vertices,
                                    structs::UVW* coords) const {
  detail::ProjectInBlocks(*this, detail::ProjectBoxBlock, vertices, coords);
}

void NBoxProjector::ComputeTangentFrames(data::operators::projector::NVertices const& vertices,
                                         VX_Math::Matrix const& toModel, structs::XYZ* tangents,
                                         structs::XYZ* binormals) const {
  detail::ComputeFramesInBlocks(*this, detail::ComputeBoxFrames, vertices, toModel, tangents,
                                binormals);
}

}  // namespace corvanta::data::domain::operators::projector
