#pragma once

namespace corvanta::data::structs {

/// A point or direction in single precision.
struct XYZ {
  float x, y, z;

  /// Requires: index 0 to 2.
  float& operator[](unsigned int index) { return index == 0 ? x : index == 1 ? y : z; }
  float operator[](unsigned int index) const { return index == 0 ? x : index == 1 ? y : z; }
};

}  // namespace corvanta::data::structs
