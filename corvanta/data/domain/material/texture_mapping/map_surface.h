#pragma once

#include <vector>

#include "corvanta/data/domain/material/texture_mapping/NProjectionMapping.h"

namespace corvanta::data::domain::material::texture_mapping {

/// What a projection gives a surface. Without a seam `indices` and `vertexMap` are empty: the
/// vertices and the triangles are the surface's own.
struct NMappedCoords {
  std::vector<structs::UVW> coords;
  std::vector<unsigned int> indices;
  std::vector<unsigned int> vertexMap;
};

/// The coordinates that `mapping` gives a surface of the model at `path`; see
/// NProjectionMapping::ComputeTextureCoords, which it calls.
/// Fails: no coordinates for a surface without vertices, or without a projection for the model.
CORVANTA_API NMappedCoords MapSurface(NProjectionMapping const& mapping,
                                      NProjectionMapping::ModelPath const& path,
                                      geometry::NSurface const& surface);

}  // namespace corvanta::data::domain::material::texture_mapping
