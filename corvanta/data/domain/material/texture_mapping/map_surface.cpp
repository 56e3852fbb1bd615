#include "corvanta/data/domain/material/texture_mapping/map_surface.h"

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/material/texture_mapping/NTextureMapping.h"

namespace corvanta::data::domain::material::texture_mapping {

NMappedCoords MapSurface(NProjectionMapping const& mapping,
                         NProjectionMapping::ModelPath const& path,
                         geometry::NSurface const& surface) {
  auto const& coords = surface.GetCoords();
  auto const& indices = surface.GetIndices();
  NMappedCoords mapped;
  if (coords.empty()) return mapped;
  mapping.ComputeTextureCoords(path,
                               {static_cast<unsigned int>(coords.size()), &coords.front().x,
                                &surface.GetNormals().front().x},
                               {static_cast<unsigned int>(indices.size()), indices.data()},
                               mapped.coords, mapped.indices, mapped.vertexMap);
  return mapped;
}

NTextureMapping::~NTextureMapping() = default;

}  // namespace corvanta::data::domain::material::texture_mapping
