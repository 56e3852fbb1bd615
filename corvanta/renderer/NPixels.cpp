#include "corvanta/renderer/NPixels.h"

#include <png.h>

#include <stdexcept>

namespace corvanta::renderer {

namespace {

/// Four bytes a pixel; empty without opacities.
std::vector<unsigned char> JoinOpacities(NPixels const& pixels) {
  std::vector<unsigned char> joined;
  joined.reserve(4 * pixels.GetOpacities().size());
  unsigned char const* color = pixels.GetRow(0);
  for (unsigned char const opacity : pixels.GetOpacities()) {
    joined.insert(joined.end(), {color[0], color[1], color[2], opacity});
    color += 3;
  }
  return joined;
}

}  // namespace

std::string EncodePng(NPixels const& pixels) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = pixels.GetWidth();
  image.height = pixels.GetHeight();
  image.format = pixels.HasOpacities() ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
  std::vector<unsigned char> const joined = JoinOpacities(pixels);
  unsigned char const* const rows = joined.empty() ? pixels.GetRow(0) : joined.data();
  auto size = static_cast<png_alloc_size_t>(PNG_IMAGE_PNG_SIZE_MAX(image));
  std::string bytes(size, '\0');
  if (png_image_write_to_memory(&image, bytes.data(), &size, 0, rows, 0, nullptr) == 0) {
    throw std::runtime_error(image.message);
  }
  bytes.resize(size);
  return bytes;
}

}  // namespace corvanta::renderer
