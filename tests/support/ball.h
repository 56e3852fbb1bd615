#pragma once

#include <cmath>
#include <vector>

namespace corvanta::support {

/// A ball of radius 1 about the origin: `up` rings of `around` pairs of triangles. Its coordinates
/// are its normals.
struct Ball {
  std::vector<float> coords;
  std::vector<unsigned> indices;

  Ball(unsigned around, unsigned up) {
    for (unsigned j = 0; j <= up; ++j) {
      for (unsigned i = 0; i <= around; ++i) {
        float const a = 6.2831853f * static_cast<float>(i) / static_cast<float>(around);
        float const b = 3.1415927f * static_cast<float>(j) / static_cast<float>(up);
        coords.insert(coords.end(),
                      {std::sin(b) * std::cos(a), std::cos(b), std::sin(b) * std::sin(a)});
        if (i == around || j == up) continue;
        unsigned const at = j * (around + 1) + i;
        indices.insert(indices.end(),
                       {at, at + 1, at + around + 1, at + 1, at + around + 2, at + around + 1});
      }
    }
  }
};

}  // namespace corvanta::support
