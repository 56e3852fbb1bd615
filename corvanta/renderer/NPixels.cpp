#include "corvanta/renderer/NPixels.h"

#include <png.h>

#include <stdexcept>

namespace corvanta::renderer {

std::string EncodePng(NPixels const& pixels) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = pixels.GetWidth();
  image.height = pixels.GetHeight();
  image.format = PNG_FORMAT_RGB;
  auto size = static_cast<png_alloc_size_t>(PNG_IMAGE_PNG_SIZE_MAX(image));
  std::string bytes(size, '\0');
  if (png_image_write_to_memory(&image, bytes.data(), &size, 0, pixels.GetRow(0), 0, nullptr) ==
      0) {
    throw std::runtime_error(image.message);
  }
  bytes.resize(size);
  return bytes;
}

}  // namespace corvanta::renderer
