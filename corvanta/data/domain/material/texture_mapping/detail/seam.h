#pragma once

#include <vector>

#include "corvanta/data/structs/UVW.h"

namespace corvanta::data::domain::material::texture_mapping::detail {

/// Cuts a mesh along the seam of coordinates whose u runs from 0 to 1 once around.
///
/// An edge crosses the seam if both its u lie in 0 to 1, more than 0.5 apart. Its lower corner gets
/// a copy of its vertex with u + 1, in this triangle alone: the coordinates are appended to
/// `coords`, the source to `vertexMap`, and `indices` names the copy. A triangle with an index
/// outside `coords` becomes three times 0xFFFFFFFF; a last run of one or two is left as it is.
void CutSeam(std::vector<structs::UVW>& coords, std::vector<unsigned int>& indices,
             std::vector<unsigned int>& vertexMap);

}  // namespace corvanta::data::domain::material::texture_mapping::detail
