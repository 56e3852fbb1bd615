#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "corvanta/data/resource/image/NImage.h"

namespace corvanta::renderer {

/// A decoded picture: four floats or four bytes a pixel, red, green, blue and alpha, rows from the
/// bottom. One of the two vectors is empty.
struct NTexels {
  unsigned width = 0;
  unsigned height = 0;
  std::vector<unsigned char> bytes;  // with the transfer function of sRGB
  std::vector<float> floats;         // linear; where a picture has more than bytes
  bool hasAlpha = false;             // some pixel isn't opaque
};

/// The faces of a picture: one, or the six of a cube map in the order +x, -x, +y, -y, +z, -z, whose
/// rows run from the top.
/// Fails: empty for bytes that aren't a picture. `extension` (".tga") judges a format that its
/// bytes don't tell.
std::vector<NTexels> ReadTexels(data::resource::image::NImage const& image,
                                std::wstring const& extension);

/// Halves the sides that are longer than `mostSide` until none is; pixels become the means of
/// neighbours.
void Shrink(NTexels& texels, unsigned mostSide);

}  // namespace corvanta::renderer
