#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"

#include <cmath>

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/structs/convert.h"

namespace corvanta::data::domain::material::texture_mapping {

using structs::ToVec3;
using structs::ToXYZ;
using structs::UVW;
using structs::XYZ;
using VX_Math::Vec3;

namespace {

/// The derivative of the position along v in the triangle of the three vertices.
/// A triangle whose coordinates are degenerate counts with a scale of 1.
Vec3 ComputeBinormal(Vec3 const& e1, Vec3 const& e2, UVW const& uvw0, UVW const& uvw1,
                     UVW const& uvw2) {
  float const du1 = uvw1.u - uvw0.u;
  float const dv1 = uvw1.v - uvw0.v;
  float const du2 = uvw2.u - uvw0.u;
  float const dv2 = uvw2.v - uvw0.v;
  float const determinant = du1 * dv2 - du2 * dv1;
  float const scale = std::fabs(determinant) > 0.0001f ? 1.0f / determinant : 1.0f;
  return (e2 * du1 - e1 * du2) * scale;
}

void Accumulate(XYZ& sum, Vec3 const& v) { sum = ToXYZ(ToVec3(sum) + v); }

}  // namespace

NUVWMapping::NUVWMapping(NUVWMappingType type) noexcept : m_type(type) {}

NUVWMapping::NUVWMapping(NUVWMapping const&) noexcept = default;

NUVWMapping& NUVWMapping::operator=(NUVWMapping const& other) noexcept {
  m_type = other.m_type;
  return *this;
}

NUVWMapping::~NUVWMapping() = default;

NTextureMappingType NUVWMapping::GetTypeImpl() const { return NTMT_UVW; }

std::vector<UVW> const* NUVWMapping::FindUVWs(geometry::NSurface const& surface) const noexcept {
  std::vector<UVW> const* const flat = surface.GetUVWs(NUVWID_FLAT);
  return flat != nullptr ? flat
                         : surface.GetUVWs(static_cast<NUVWMappingID>(m_type & ~NUVWMT_INTERNAL));
}

void NUVWMapping::ComputeTextureCoords(geometry::NSurface const& surface,
                                       std::vector<UVW>& coords) const {
  if (std::vector<UVW> const* const uvws = FindUVWs(surface)) {
    coords = *uvws;
  } else {
    coords.assign(surface.GetCoords().size(), UVW());
  }
}

void NUVWMapping::ComputeTangents(geometry::NSurface const& surface, std::vector<XYZ>& tangents,
                                  std::vector<XYZ>& binormals) const {
  std::vector<XYZ> const& coords = surface.GetCoords();
  std::vector<XYZ> const& normals = surface.GetNormals();
  std::vector<unsigned int> const& indices = surface.GetIndices();
  std::size_t const vertexCount = coords.size();
  tangents.resize(vertexCount);
  binormals.resize(vertexCount);
  std::vector<UVW> const* const found = FindUVWs(surface);
  if (found == nullptr) return;
  std::vector<UVW> const& uvws = *found;

  for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
    unsigned int const i0 = indices[i];
    unsigned int const i1 = indices[i + 1];
    unsigned int const i2 = indices[i + 2];
    if (i0 >= vertexCount || i1 >= vertexCount || i2 >= vertexCount) continue;
    Vec3 const origin = ToVec3(coords[i0]);
    Vec3 const binormal = ComputeBinormal(ToVec3(coords[i1]) - origin, ToVec3(coords[i2]) - origin,
                                          uvws[i0], uvws[i1], uvws[i2]);
    Accumulate(binormals[i0], binormal);
    Accumulate(binormals[i1], binormal);
    Accumulate(binormals[i2], binormal);
  }
  for (std::size_t k = 0; k != vertexCount; ++k) {
    Vec3 const normal = ToVec3(normals[k]);
    Vec3 tangent = ToVec3(binormals[k]).Cross(normal);
    tangent.Normalize();
    tangents[k] = ToXYZ(tangent);
    binormals[k] = ToXYZ(normal.Cross(tangent));
  }
}

}  // namespace corvanta::data::domain::material::texture_mapping
