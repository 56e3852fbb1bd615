#include "app/commands/size.h"

#include <cstdint>
#include <cstdio>

#include "app/render/NTarget.h"

namespace corvanta::app {

std::optional<std::array<unsigned, 2>> ParseSize(std::string const& text) {
  unsigned width = 0, height = 0;
  char end = 0;
  if (std::sscanf(text.c_str(), "%6ux%6u%c", &width, &height, &end) != 2) return std::nullopt;
  if (width == 0 || height == 0) return std::nullopt;
  return std::array<unsigned, 2>{width, height};
}

std::string CheckSize(std::string const& text) {
  return ParseSize(text) ? "" : "needs WxH, two whole numbers above 0";
}

std::string CheckDrawnSize(std::string const& text) {
  auto const size = ParseSize(text);
  if (!size) return CheckSize(text);
  auto const [width, height] = *size;
  bool const isSmall =
      width <= kMostSide && height <= kMostSide && std::uint64_t{width} * height <= kMostPixels;
  return isSmall ? "" : "is too large: 16384 pixels a side and 33554432 in all are the most";
}

}  // namespace corvanta::app
