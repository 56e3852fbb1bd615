#include "corvanta/data/operators/projector/NProjector.h"

#include "corvanta/data/structs/convert.h"
#include "corvanta/vx_math/Vec3.h"

namespace corvanta::data::operators::projector {

using VX_Math::Vec3;

NProjector::~NProjector() = default;

bool NProjector::HasSeam() const { return false; }

void NProjector::ProjectWithNormal(float x, float y, float z, float, float, float, float& u,
                                   float& v, float& w) const {
  ProjectPoint(x, y, z, u, v, w);
}

void NProjector::ProjectPoint(float, float, float, float&, float&, float&) const {}

namespace {

Vec3 Read(float const* v) { return {v[0], v[1], v[2]}; }

Vec3 TransformPoint(Vec3 const& point, VX_Math::Matrix const& matrix) {
  Vec3 out;
  matrix.MultVecMatrix(point, out);
  return out;
}

/// With length 1.
Vec3 TransformDirection(Vec3 const& direction, VX_Math::Matrix const& matrix) {
  Vec3 out;
  matrix.MultDirMatrix(direction, out);
  out.Normalize();
  return out;
}

}  // namespace

void NProjector::ProjectVertices(NVertices const& vertices, structs::UVW* coords) const {
  for (std::size_t i = 0; i != vertices.count; ++i) {
    Vec3 const p = TransformPoint(Read(vertices.coords + 3 * i), vertices.toProjector);
    Vec3 const n = TransformDirection(Read(vertices.normals + 3 * i), vertices.normalToProjector);
    ProjectWithNormal(p.x, p.y, p.z, n.x, n.y, n.z, coords[i].u, coords[i].v, coords[i].w);
  }
}

void NProjector::ComputeTangentFrames(NVertices const& vertices, VX_Math::Matrix const& toModel,
                                      structs::XYZ* tangents, structs::XYZ* binormals) const {
  for (std::size_t i = 0; i != vertices.count; ++i) {
    Vec3 const p = TransformPoint(Read(vertices.coords + 3 * i), vertices.toProjector);
    Vec3 const n = TransformDirection(Read(vertices.normals + 3 * i), vertices.normalToProjector);
    Vec3 t;
    Vec3 b;
    ComputeTangentFrame(p.x, p.y, p.z, n.x, n.y, n.z, t.x, t.y, t.z, b.x, b.y, b.z);
    tangents[i] = structs::ToXYZ(TransformDirection(t, toModel));
    binormals[i] = structs::ToXYZ(TransformDirection(b, toModel));
  }
}

}  // namespace corvanta::data::operators::projector
