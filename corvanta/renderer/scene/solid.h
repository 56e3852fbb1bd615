#pragma once

#include <vector>

#include "corvanta/data/structs/XYZ.h"
#include "corvanta/export.h"

namespace corvanta::renderer {

/// Whether a mesh is made of closed parts, each of whose triangles are all seen anticlockwise from
/// outside and clockwise from one point inside, as with a cube or a ball. From outside no back face
/// of such a mesh is ever seen. Corners that lie
/// within a millionth of the size count as one.
/// Requires: all indices are inside the coordinates.
/// Fails: false for a coordinate that isn't finite, and for more than 65,536 triangles.
/// Cost: n log n in the triangles.
CORVANTA_API bool IsSolid(std::vector<data::structs::XYZ> const& coords,
                          std::vector<unsigned> const& indices);

}  // namespace corvanta::renderer
