#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "corvanta/export.h"

namespace corvanta::renderer {

/// A picture as bytes: three a pixel, red, green and blue, with the transfer function of sRGB; rows
/// from the top, without a gap between them. It may have an opacity for each pixel beside these,
/// which doesn't darken them.
class NPixels {
 public:
  NPixels(unsigned width, unsigned height)
      : m_width(width), m_height(height), m_bytes(std::size_t{3} * width * height) {}

  unsigned GetWidth() const { return m_width; }
  unsigned GetHeight() const { return m_height; }
  unsigned char* GetRow(unsigned y) { return m_bytes.data() + std::size_t{3} * m_width * y; }
  unsigned char const* GetRow(unsigned y) const {
    return m_bytes.data() + std::size_t{3} * m_width * y;
  }

  bool HasOpacities() const { return !m_opacities.empty(); }
  /// A byte a pixel, as the rows of the picture.
  std::vector<unsigned char> const& GetOpacities() const { return m_opacities; }
  /// Requires: as many as there are pixels.
  void SetOpacities(std::vector<unsigned char> opacities) { m_opacities = std::move(opacities); }

 private:
  unsigned m_width, m_height;
  std::vector<unsigned char> m_bytes, m_opacities;
};

/// The picture as the bytes of a PNG file; the same picture gives the same bytes.
/// Fails: throws std::runtime_error where the encoder gives up.
CORVANTA_API std::string EncodePng(NPixels const& pixels);

}  // namespace corvanta::renderer
