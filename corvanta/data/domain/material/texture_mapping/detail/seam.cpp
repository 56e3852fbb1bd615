#include "corvanta/data/domain/material/texture_mapping/detail/seam.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>

namespace corvanta::data::domain::material::texture_mapping::detail {

namespace {

using structs::UVW;

bool CrossesSeam(float u0, float u1) {
  return u0 >= 0.0f && u0 <= 1.0f && u1 >= 0.0f && u1 <= 1.0f && std::fabs(u0 - u1) > 0.5f;
}

/// `corners` are the three indices of a triangle.
void CutTriangle(unsigned int* corners, std::vector<UVW>& coords,
                 std::vector<unsigned int>& vertexMap) {
  for (int k = 0; k != 3; ++k) {
    int const next = (k + 1) % 3;
    float const u0 = coords[corners[k]].u;
    float const u1 = coords[corners[next]].u;
    if (!CrossesSeam(u0, u1)) continue;
    unsigned int& lower = corners[u0 < u1 ? k : next];
    UVW copy = coords[lower];
    copy.u += 1.0f;
    coords.push_back(copy);
    vertexMap.push_back(lower);
    lower = static_cast<unsigned int>(vertexMap.size() - 1);
  }
}

}  // namespace

void CutSeam(std::vector<UVW>& coords, std::vector<unsigned int>& indices,
             std::vector<unsigned int>& vertexMap) {
  std::size_t const vertexCount = coords.size();
  vertexMap.resize(vertexCount);
  std::iota(vertexMap.begin(), vertexMap.end(), 0u);
  for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
    unsigned int* const corners = &indices[i];
    if (corners[0] >= vertexCount || corners[1] >= vertexCount || corners[2] >= vertexCount) {
      // It must not come to name a copy.
      corners[0] = corners[1] = corners[2] = std::numeric_limits<unsigned int>::max();
      continue;
    }
    float const u0 = coords[corners[0]].u;
    float const u1 = coords[corners[1]].u;
    float const u2 = coords[corners[2]].u;
    // Nearly all triangles end here.
    if (std::fabs(u0 - u1) > 0.5f || std::fabs(u1 - u2) > 0.5f || std::fabs(u2 - u0) > 0.5f) {
      CutTriangle(corners, coords, vertexMap);
    }
  }
}

}  // namespace corvanta::data::domain::material::texture_mapping::detail
