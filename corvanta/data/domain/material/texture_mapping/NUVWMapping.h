#pragma once

#include <vector>

#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/domain/material/texture_mapping/NTextureMapping.h"
#include "corvanta/data/structs/UVW.h"
#include "corvanta/data/structs/XYZ.h"

namespace corvanta::data::domain::material::texture_mapping {

/// What a NUVWMapping looks up: the id of a UVW set, which may carry the flag of a built-in
/// material's mapping.
enum NUVWMappingType : unsigned int {
  NUVWMT_INTERNAL = 0x10000000,  // the flag, over NUVWID_PRIMITIVE
};

/// Lays a texture by the coordinates that the surface itself carries: the set under NUVWID_FLAT
/// or, without one, the set under the mapping's own id.
class CORVANTA_API NUVWMapping : public NTextureMapping {
 public:
  NUVWMapping(NUVWMappingType type) noexcept;
  NUVWMapping(NUVWMapping const& other) noexcept;
  NUVWMapping& operator=(NUVWMapping const& other) noexcept;
  ~NUVWMapping() override;

  NUVWMappingType GetUVWMappingType() const noexcept { return m_type; }

  /// Makes `coords` the set that was found; without one, a zero a vertex.
  void ComputeTextureCoords(geometry::NSurface const& surface,
                            std::vector<structs::UVW>& coords) const;
  /// Makes `tangents` and `binormals` orthogonal to the surface's normals, the binormal along
  /// growing v. Tangents have the length 1, or 0 where no triangle tells a direction. Without a UVW
  /// set both are zeros.
  /// Units: one of each a vertex, in single precision.
  /// Requires: both vectors come in empty; elements that are there would count in.
  void ComputeTangents(geometry::NSurface const& surface, std::vector<structs::XYZ>& tangents,
                       std::vector<structs::XYZ>& binormals) const;

 private:
  NTextureMappingType GetTypeImpl() const override;

  std::vector<structs::UVW> const* FindUVWs(geometry::NSurface const& surface) const noexcept;

  NUVWMappingType m_type;
};

}  // namespace corvanta::data::domain::material::texture_mapping
