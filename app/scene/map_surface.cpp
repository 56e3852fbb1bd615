#include "app/scene/map_surface.h"

namespace corvanta::app {

NMappedCoords MapSurface(
    data::domain::material::texture_mapping::NProjectionMapping const& mapping,
    data::domain::material::texture_mapping::NProjectionMapping::ModelPath const& path,
    data::domain::geometry::NSurface const& surface) {
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

}  // namespace corvanta::app
