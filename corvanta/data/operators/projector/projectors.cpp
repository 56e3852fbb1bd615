#include "corvanta/data/operators/projector/NBoxProjector.h"
#include "corvanta/data/operators/projector/NCylinderProjector.h"
#include "corvanta/data/operators/projector/NPlaneProjector.h"
#include "corvanta/data/operators/projector/NSphereProjector.h"
#include "corvanta/data/operators/projector/NTriplanarProjector.h"
#include "corvanta/data/operators/projector/detail/formulas.h"
#include "corvanta/data/operators/projector/detail/tangent_frame.h"
#include "corvanta/data/operators/projector/detail/vertex_passes.h"

namespace corvanta::data::domain::operators::projector {

namespace detail = data::operators::projector::detail;

namespace {

void Give(structs::UVW const& uvw, float& u, float& v, float& w) {
  u = uvw.u;
  v = uvw.v;
  w = uvw.w;
}

}  // namespace

NBoxProjector::~NBoxProjector() = default;

void NBoxProjector::ProjectWithNormal(float x, float y, float z, float nx, float ny, float nz,
                                      float& u, float& v, float& w) const {
  Give(detail::ProjectByBox({x, y, z}, {nx, ny, nz}), u, v, w);
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

NCylinderProjector::~NCylinderProjector() = default;

bool NCylinderProjector::HasSeam() const { return true; }

void NCylinderProjector::ProjectPoint(float x, float y, float z, float& u, float& v,
                                      float& w) const {
  Give(detail::ProjectOntoCylinder({x, y, z}, detail::GetAngle(-x, z)), u, v, w);
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

NPlaneProjector::~NPlaneProjector() = default;

void NPlaneProjector::ProjectPoint(float x, float y, float z, float& u, float& v, float& w) const {
  Give(detail::ProjectOntoPlane({x, y, z}), u, v, w);
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

NTriplanarProjector::~NTriplanarProjector() = default;

void NTriplanarProjector::ProjectWithNormal(float x, float y, float z, float nx, float ny, float nz,
                                            float& u, float& v, float& w) const {
  Give(detail::ProjectByTriplanar({x, y, z}, {nx, ny, nz}), u, v, w);
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
