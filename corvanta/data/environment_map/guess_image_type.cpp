#include "corvanta/data/environment_map/guess_image_type.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <optional>

#include "corvanta/platform/file.h"
#include "corvanta/platform/picture.h"

namespace corvanta::data::environment_map {

namespace {

struct Layout {
  unsigned int width = 0;
  unsigned int height = 0;
  bool isCube = false;
};

std::optional<Layout> ReadDdsHeader(std::FILE& file) {
  constexpr std::size_t kLength = 124;
  constexpr std::uint32_t kHasCapabilities = 1;
  constexpr std::uint32_t kIsCubeMap = 0x200;
  std::array<unsigned char, kLength> bytes;
  if (std::fread(bytes.data(), 1, kLength, &file) != kLength) return std::nullopt;
  auto const word = [&bytes](std::size_t at) {
    return bytes[at] | std::uint32_t{bytes[at + 1]} << 8 | std::uint32_t{bytes[at + 2]} << 16 |
           std::uint32_t{bytes[at + 3]} << 24;
  };
  if (word(0) != kLength || (word(4) & kHasCapabilities) == 0) return std::nullopt;
  return Layout{word(12), word(8), (word(108) & kIsCubeMap) != 0};
}

std::optional<Layout> ReadLayout(std::wstring const& path) {
  platform::NFile const file = platform::OpenFile(path);
  char magic[4];
  if (!file || std::fread(magic, 1, sizeof magic, file.get()) != sizeof magic) return std::nullopt;
  if (std::memcmp(magic, "DDS ", sizeof magic) == 0) return ReadDdsHeader(*file);
  Layout layout;
  return platform::GetPictureSize(path, layout.width, layout.height) ? std::optional(layout)
                                                                     : std::nullopt;
}

}  // namespace

NEnvironmentMapImageType GuessEnvironmentMapImageType(wchar_t const* path) {
  std::optional<Layout> const layout = path ? ReadLayout(path) : std::nullopt;
  if (!layout) return NEMIT_RECTANGULAR;
  if (layout->isCube) return NEMIT_CUBE;
  double const width = layout->width;
  double const height = layout->height;
  return height < 1.1 * width && 1.1 * height > width ? NEMIT_SQUARE : NEMIT_RECTANGULAR;
}

}  // namespace corvanta::data::environment_map
