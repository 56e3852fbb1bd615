#pragma once

#include "tests/support/test.h"

namespace corvanta::pictures {

/// Whether this build has a decoder.
#ifdef CORVANTA_WITH_FREEIMAGE
inline constexpr bool kDecodes = true;
#else
inline constexpr bool kDecodes = false;
#endif

inline std::string Little(std::uint32_t value, int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(i < 4 ? value >> 8 * i : 0);
  return bytes;
}

inline std::string Big(std::uint32_t value, int count) {
  std::string const little = Little(value, count);
  return {little.rbegin(), little.rend()};
}

/// 16 by 8 pixels of one byte, the left half black and the right half white.
inline std::string Jpeg() {
  static constexpr unsigned char kBytes[] = {
      0xff, 0xd8, 0xff, 0xe0, 0x00, 0x10, 0x4a, 0x46, 0x49, 0x46, 0x00, 0x01, 0x01, 0x01, 0x00,
      0x48, 0x00, 0x48, 0x00, 0x00, 0xff, 0xdb, 0x00, 0x43, 0x00, 0x50, 0x37, 0x3c, 0x46, 0x3c,
      0x32, 0x50, 0x46, 0x41, 0x46, 0x5a, 0x55, 0x50, 0x5f, 0x78, 0xc8, 0x82, 0x78, 0x6e, 0x6e,
      0x78, 0xf5, 0xaf, 0xb9, 0x91, 0xc8, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff,
      0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff,
      0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff,
      0xc0, 0x00, 0x0b, 0x08, 0x00, 0x08, 0x00, 0x10, 0x01, 0x01, 0x11, 0x00, 0xff, 0xc4, 0x00,
      0x15, 0x00, 0x01, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
      0x00, 0x00, 0x00, 0x04, 0x05, 0xff, 0xc4, 0x00, 0x14, 0x10, 0x01, 0x00, 0x00, 0x00, 0x00,
      0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xff, 0xda, 0x00,
      0x08, 0x01, 0x01, 0x00, 0x00, 0x3f, 0x00, 0x12, 0xd3, 0xff, 0xd9};
  return {reinterpret_cast<char const*>(kBytes), sizeof kBytes};
}

/// The header of a BMP of `width` by `height` pixels of three bytes.
inline std::string Bmp(std::uint32_t width, std::uint32_t height) {
  return "BM" + Little(54, 4) + Little(0, 4) + Little(54, 4) + Little(40, 4) + Little(width, 4) +
         Little(height, 4) + Little(1, 2) + Little(24, 2) + std::string(24, '\0');
}

/// A grey TIFF that claims `width` by `height` pixels of one byte and holds `length` of them.
inline std::string Tiff(std::uint32_t width, std::uint32_t height, std::size_t length) {
  std::string bytes = "II" + Little(42, 2) + Little(8, 4) + Little(9, 2);
  std::uint32_t const pixels = 8 + 2 + 9 * 12 + 4;
  std::uint32_t const tags[][2] = {{256, width}, {257, height}, {258, 8},
                                   {259, 1},     {262, 1},      {273, pixels},
                                   {277, 1},     {278, height}, {279, width * height}};
  for (auto const& [tag, value] : tags)
    bytes += Little(tag, 2) + Little(4, 2) + Little(1, 4) + Little(value, 4);
  return bytes + Little(0, 4) + std::string(length, '\x40');
}

inline std::string Gif(std::uint32_t width, std::uint32_t height) {
  std::string const comment = std::string("!\xfe\3abc\0", 7);
  return "GIF89a" + Little(2, 2) + Little(2, 2) + std::string("\x80\0\0", 3) +
         std::string("\0\0\0\xff\xff\xff", 6) + comment + "," + Little(0, 4) + Little(width, 2) +
         Little(height, 2) + std::string("\0\2\2\x4c\1\0;", 7);
}

inline std::string Sgi(std::uint32_t width, std::uint32_t height) {
  std::string bytes =
      Big(474, 2) + Big(1, 2) + Big(3, 2) + Big(width, 2) + Big(height, 2) + Big(1, 2);
  return bytes + std::string(512 - bytes.size() + 16, '\0');
}

inline std::string Wbmp(std::uint32_t width, std::uint32_t height) {
  std::string bytes(2, '\0');
  for (std::uint32_t side : {width, height}) {
    bytes += static_cast<char>(0x80 | side >> 14);
    bytes += static_cast<char>(0x80 | (side >> 7 & 0x7f));
    bytes += static_cast<char>(side & 0x7f);
  }
  return bytes + "pixels";
}

inline std::string Dds(std::uint32_t width, std::uint32_t height, std::uint32_t capabilities = 0,
                       std::uint32_t size = 124, std::uint32_t flags = 0x1007) {
  return "DDS " + Little(size, 4) + Little(flags, 4) + Little(height, 4) + Little(width, 4) +
         std::string(56, '\0') + Little(32, 4) + Little(0x41, 4) + Little(0, 4) + Little(32, 4) +
         Little(0xff0000, 4) + Little(0xff00, 4) + Little(0xff, 4) + Little(0xff000000, 4) +
         Little(0x1000, 4) + Little(capabilities, 4) + std::string(12, '\0') + "pixels";
}

/// The start of a JPEG 2000 codestream, alone or in the boxes of a JP2 file.
inline std::string J2k(std::uint32_t width, std::uint32_t height) {
  std::string const start = Big(0xff4fff51, 4) + Big(47, 2) + Big(0, 2);
  std::string const area = Big(width, 4) + Big(height, 4) + Big(0, 8);
  return start + area + area + Big(3, 2) + std::string("\7\1\1\7\1\1\7\1\1", 9);
}

inline std::string Jp2(std::uint32_t width, std::uint32_t height) {
  std::string const signature = Big(12, 4) + "jP  " + Big(0x0d0a870a, 4);
  return signature + Big(20, 4) + "ftypjp2 " + Big(0, 4) + "jp2 " + Big(1, 4) + "free" + Big(0, 4) +
         Big(16, 4) + Big(0, 4) + "jp2c" + J2k(width, height);
}

/// The start of an EXR without pixels; tiled if `tile` isn't 0.
inline std::string Exr(std::uint32_t width, std::uint32_t height, std::uint32_t tile = 0) {
  auto const attribute = [](std::string const& name, std::string const& type,
                            std::string const& value) {
    return name + '\0' + type + '\0' + Little(static_cast<std::uint32_t>(value.size()), 4) + value;
  };
  std::string const window = Little(0, 8) + Little(width - 1, 4) + Little(height - 1, 4);
  std::string const channel =
      std::string("R\0", 2) + Little(1, 4) + Little(0, 4) + Little(1, 4) + Little(1, 4) + '\0';
  std::string bytes = Little(20000630, 4) + Little(tile == 0 ? 2 : 0x202, 4);
  bytes += attribute("channels", "chlist", channel) +
           attribute("compression", "compression", std::string(1, '\0'));
  bytes += attribute("dataWindow", "box2i", window) + attribute("displayWindow", "box2i", window);
  bytes += attribute("lineOrder", "lineOrder", std::string(1, '\0'));
  bytes += attribute("pixelAspectRatio", "float", Little(0x3f800000, 4));
  bytes += attribute("screenWindowCenter", "v2f", Little(0, 8)) +
           attribute("screenWindowWidth", "float", Little(0x3f800000, 4));
  if (tile != 0) bytes += attribute("tiles", "tiledesc", Little(tile, 4) + Little(tile, 4) + '\0');
  return bytes + '\0' + Little(0, 8);
}

}  // namespace corvanta::pictures
