#include "corvanta/renderer/texels.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <span>

#include "corvanta/platform/picture.h"

namespace corvanta::renderer {

namespace {

using Bytes = std::span<unsigned char const>;

constexpr unsigned kMostSide = 65536;

std::uint32_t Word(Bytes bytes, std::size_t at) {
  std::uint32_t word = 0;
  std::memcpy(&word, bytes.data() + at, sizeof word);
  return word;
}

void NoteAlpha(NTexels& texels) {
  for (std::size_t i = 3; i < texels.bytes.size(); i += 4)
    texels.hasAlpha |= texels.bytes[i] != 255;
  for (std::size_t i = 3; i < texels.floats.size(); i += 4) {
    texels.hasAlpha |= texels.floats[i] < 1.0f;
  }
}

float ToLinear(float value) {
  return value <= 0.04045f ? value / 12.92f : std::pow((value + 0.055f) / 1.055f, 2.4f);
}

/// A device-independent bitmap: header, palette, rows of 32-bit words.
class Bitmap {
 public:
  explicit Bitmap(Bytes bytes) : m_bytes(bytes) {}

  std::vector<NTexels> Read() {
    constexpr std::size_t kHeader = 40;
    if (m_bytes.size() < kHeader) return {};
    m_texels.width = Word(m_bytes, 4);
    m_texels.height = Word(m_bytes, 8);
    m_bits = m_bytes[14] | static_cast<unsigned>(m_bytes[15]) << 8;
    constexpr unsigned kBits[] = {1, 4, 8, 16, 24, 32, 48, 64, 96, 128};
    if (std::count(std::begin(kBits), std::end(kBits), m_bits) == 0) return {};
    if (m_texels.width - 1 >= kMostSide || m_texels.height - 1 >= kMostSide) return {};
    m_palette = Word(m_bytes, 0);
    unsigned const colors = m_bits <= 8 ? std::max(Word(m_bytes, 32), 1u << m_bits) : 0;
    // A 16-bit bitmap of three colours keeps their masks there; one of greys has none.
    unsigned const masks = m_bits == 16 && Word(m_bytes, 16) == 3 ? 3 : 0;
    if (masks != 0 && m_palette + 12 <= m_bytes.size()) m_greenMask = Word(m_bytes, m_palette + 4);
    m_pitch = (std::size_t{m_texels.width} * m_bits + 31) / 32 * 4;
    std::size_t const rows = m_palette + std::size_t{4} * (colors + masks);
    if (rows + m_pitch * m_texels.height > m_bytes.size()) return {};
    bool const hasFloats = m_bits > 32 || (m_bits == 16 && masks == 0);
    std::size_t const count = std::size_t{4} * m_texels.width * m_texels.height;
    hasFloats ? m_texels.floats.resize(count) : m_texels.bytes.resize(count);
    for (unsigned y = 0; y != m_texels.height; ++y) {
      unsigned char const* const row = m_bytes.data() + rows + m_pitch * y;
      std::size_t const first = std::size_t{4} * m_texels.width * y;
      for (unsigned x = 0; x != m_texels.width; ++x) {
        hasFloats ? ReadFloats(row, x, &m_texels.floats[first + 4 * x])
                  : ReadBytes(row, x, &m_texels.bytes[first + 4 * x]);
      }
    }
    // Many writers leave the fourth byte of a 32-bit bitmap at 0 throughout.
    if (m_bits == 32 && !HasAlpha()) {
      for (std::size_t i = 3; i < count; i += 4) m_texels.bytes[i] = 255;
    }
    NoteAlpha(m_texels);
    return {m_texels};
  }

 private:
  bool HasAlpha() const {
    for (std::size_t i = 3; i < m_texels.bytes.size(); i += 4) {
      if (m_texels.bytes[i] != 0) return true;
    }
    return false;
  }

  void ReadBytes(unsigned char const* row, std::size_t x, unsigned char* to) const {
    unsigned char const* from = nullptr;
    if (m_bits <= 8) {
      unsigned const perByte = 8 / m_bits;
      auto const shift = static_cast<unsigned>(8 - m_bits * (x % perByte + 1));
      unsigned const index = row[x / perByte] >> shift & ((1u << m_bits) - 1);
      from = m_bytes.data() + m_palette + std::size_t{4} * index;
    } else if (m_bits == 16) {
      return ReadPacked(row, x, to);
    } else {
      from = row + x * (m_bits / 8);
    }
    to[0] = from[2];
    to[1] = from[1];
    to[2] = from[0];
    to[3] = m_bits == 32 ? from[3] : 255;
  }

  void ReadPacked(unsigned char const* row, std::size_t x, unsigned char* to) const {
    unsigned const value = row[2 * x] | static_cast<unsigned>(row[2 * x + 1]) << 8;
    unsigned const greens = m_greenMask == 0x7E0 ? 6 : 5;
    auto const widen = [value](unsigned shift, unsigned bits) {
      unsigned const most = (1u << bits) - 1;
      return static_cast<unsigned char>((value >> shift & most) * 255 / most);
    };
    to[0] = widen(5 + greens, 5);
    to[1] = widen(5, greens);
    to[2] = widen(0, 5);
    to[3] = 255;
  }

  // Words of 16 bits hold display values, floats hold light.
  void ReadFloats(unsigned char const* row, std::size_t x, float* to) const {
    unsigned const channels = m_bits == 16 ? 1 : m_bits == 48 || m_bits == 96 ? 3 : 4;
    to[3] = 1.0f;
    for (std::size_t c = 0; c != channels; ++c) {
      if (m_bits <= 64) {
        std::uint16_t word = 0;
        std::memcpy(&word, row + 2 * (x * channels + c), sizeof word);
        float const value = static_cast<float>(word) / 65535.0f;
        to[c] = c == 3 ? value : ToLinear(value);
      } else {
        std::memcpy(&to[c], row + 4 * (x * channels + c), sizeof(float));
        if (!std::isfinite(to[c])) to[c] = 0.0f;
      }
    }
    if (channels == 1) to[1] = to[2] = to[0];
  }

  Bytes m_bytes;
  NTexels m_texels;
  unsigned m_bits = 0;
  std::uint32_t m_greenMask = 0;
  std::size_t m_palette = 0;
  std::size_t m_pitch = 0;
};

/// The faces of a DDS file with 24 or 32 bits a pixel; the decoder knows the first alone.
class DirectDrawSurface {
 public:
  explicit DirectDrawSurface(Bytes bytes) : m_bytes(bytes) {}

  std::vector<NTexels> Read() const {
    constexpr std::size_t kHeader = 128;
    constexpr std::uint32_t kMagic = 0x20534444, kHasColors = 0x40, kIsCube = 0x200;
    if (m_bytes.size() < kHeader || Word(m_bytes, 0) != kMagic || Word(m_bytes, 4) != 124)
      return {};
    std::uint32_t const height = Word(m_bytes, 12), width = Word(m_bytes, 16);
    std::uint32_t const bits = Word(m_bytes, 88);
    if ((Word(m_bytes, 80) & kHasColors) == 0 || (bits != 24 && bits != 32)) return {};
    if (width - 1 >= kMostSide || height - 1 >= kMostSide) return {};
    bool const isCube = (Word(m_bytes, 112) & kIsCube) != 0;
    std::size_t const pitch = std::size_t{width} * (bits / 8);
    std::size_t const faceBytes = GetChainBytes(width, height, bits / 8);
    std::size_t at = kHeader;
    std::vector<NTexels> faces;
    for (unsigned face = 0; face != (isCube ? 6u : 1u); ++face, at += faceBytes) {
      if (at + pitch * height > m_bytes.size()) return {};
      NTexels texels{width, height, {}, {}, false};
      texels.bytes.resize(std::size_t{4} * width * height);
      for (std::size_t y = 0; y != height; ++y) {
        // OpenGL takes the rows of cube faces from the top, those of a flat picture from the
        // bottom.
        std::size_t const row = isCube ? y : height - 1 - y;
        for (std::size_t x = 0; x != width; ++x) {
          ReadPixel(at + pitch * row + x * (bits / 8), bits, &texels.bytes[4 * (y * width + x)]);
        }
      }
      NoteAlpha(texels);
      faces.push_back(std::move(texels));
    }
    return faces;
  }

 private:
  // A face and its smaller copies.
  std::size_t GetChainBytes(std::size_t width, std::size_t height, std::size_t pixelBytes) const {
    constexpr std::uint32_t kHasCopies = 0x20000;
    bool const hasCopies = (Word(m_bytes, 8) & kHasCopies) != 0;
    unsigned const levels = hasCopies ? std::clamp(Word(m_bytes, 28), 1u, 16u) : 1u;
    std::size_t bytes = 0;
    for (unsigned level = 0; level != levels; ++level) {
      bytes += std::max<std::size_t>(width >> level, 1) *
               std::max<std::size_t>(height >> level, 1) * pixelBytes;
    }
    return bytes;
  }

  void ReadPixel(std::size_t at, std::uint32_t bits, unsigned char* to) const {
    std::uint32_t value = 0;
    std::memcpy(&value, m_bytes.data() + at, bits / 8);
    for (std::size_t c = 0; c != 4; ++c) {
      std::uint32_t const mask = Word(m_bytes, 92 + 4 * c);
      int const shift = std::countr_zero(mask);
      to[c] = mask == 0 ? (c == 3 ? 255 : 0) : static_cast<unsigned char>((value & mask) >> shift);
    }
  }

  Bytes m_bytes;
};

/// The means of neighbours: of `rows` rows of `count` groups of `width` numbers, those of groups 2
/// i and 2 i + 1. The last of an odd count stays.
template <class Number>
std::vector<Number> Halve(std::vector<Number> const& from, std::size_t rows, std::size_t count,
                          std::size_t width) {
  std::size_t const halved = (count + 1) / 2;
  std::vector<Number> to(from.empty() ? 0 : rows * halved * width);
  for (std::size_t i = 0; i != to.size(); ++i) {
    std::size_t const row = i / (halved * width), group = i / width % halved, k = i % width;
    std::size_t const first = (row * count + 2 * group) * width + k;
    std::size_t const second = 2 * group + 1 < count ? first + width : first;
    to[i] = static_cast<Number>((from[first] + from[second]) / 2);
  }
  return to;
}

}  // namespace

void Shrink(NTexels& texels, unsigned mostSide) {
  while (texels.width > mostSide) {
    texels.bytes = Halve(texels.bytes, texels.height, texels.width, 4);
    texels.floats = Halve(texels.floats, texels.height, texels.width, 4);
    texels.width = (texels.width + 1) / 2;
  }
  while (texels.height > mostSide) {
    std::size_t const row = std::size_t{4} * texels.width;
    texels.bytes = Halve(texels.bytes, 1, texels.height, row);
    texels.floats = Halve(texels.floats, 1, texels.height, row);
    texels.height = (texels.height + 1) / 2;
  }
}

std::vector<NTexels> ReadTexels(data::resource::image::NImage const& image,
                                std::wstring const& extension) {
  namespace image_type = data::resource::image;
  Bytes const bytes(static_cast<unsigned char const*>(image.GetData()), image.GetDataByteLength());
  if (image.GetType() == image_type::NIT_BITMAP) return Bitmap(bytes).Read();
  auto faces = DirectDrawSurface(bytes).Read();
  if (!faces.empty() || bytes.empty()) return faces;
  auto const picture = platform::DecodePicture(bytes.data(), bytes.size(), extension);
  if (!picture) return {};
  return Bitmap({static_cast<unsigned char const*>(picture->GetInfoHeader()),
                 picture->GetByteLength()})
      .Read();
}

}  // namespace corvanta::renderer
