#pragma once

#include <vector>

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/material/texture_mapping/NProjectionMapping.h"
#include "corvanta/data/structs/UVW.h"

namespace corvanta::app {

/// What a texture mapping gives for a surface. Without a seam both lists of numbers are empty: the
/// vertices and the triangles are the surface's own.
struct NMappedCoords {
  std::vector<data::structs::UVW> coords;
  std::vector<unsigned int> indices;
  std::vector<unsigned int> vertexMap;
};

/// The coordinates that `mapping` gives a surface of the model at `path`.
/// Fails: no coordinates for a surface without vertices, or without a projection for the model.
NMappedCoords MapSurface(
    data::domain::material::texture_mapping::NProjectionMapping const& mapping,
    data::domain::material::texture_mapping::NProjectionMapping::ModelPath const& path,
    data::domain::geometry::NSurface const& surface);

}  // namespace corvanta::app
