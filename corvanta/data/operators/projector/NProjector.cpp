#include "corvanta/data/operators/projector/NProjector.h"

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

void NProjector::ProjectVertices(NVertices const& vertices, structs::UVW* coords) const {
  for (std::size_t i = 0; i != vertices.count; ++i) {
    float const* const p = vertices.coords + 3 * i;
    float const* const n = vertices.normals + 3 * i;
    Vec3 point;
    Vec3 normal;
    vertices.toProjector.MultVecMatrix({p[0], p[1], p[2]}, point);
    vertices.normalToProjector.MultDirMatrix({n[0], n[1], n[2]}, normal);
    normal.Normalize();
    ProjectWithNormal(point.x, point.y, point.z, normal.x, normal.y, normal.z, coords[i].u,
                      coords[i].v, coords[i].w);
  }
}

}  // namespace corvanta::data::operators::projector
