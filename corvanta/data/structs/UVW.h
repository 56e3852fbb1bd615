#pragma once

namespace corvanta::data::structs {

/// A texture coordinate in single precision.
struct UVW {
  float u, v, w;

  /// Requires: index 0 to 2.
  float& operator[](unsigned int index) { return index == 0 ? u : index == 1 ? v : w; }
  float operator[](unsigned int index) const { return index == 0 ? u : index == 1 ? v : w; }
};

}  // namespace corvanta::data::structs
