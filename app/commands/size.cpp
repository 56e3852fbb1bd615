#include "app/commands/size.h"

#include <charconv>
#include <cstdint>
#include <system_error>

#include "corvanta/renderer/NTarget.h"

namespace corvanta::app {

std::optional<std::array<unsigned, 2>> ParseSize(std::string const& text) {
  constexpr unsigned kMost = 999999;
  std::array<unsigned, 2> size{};
  char const* const end = text.data() + text.size();
  auto const [middle, fault] = std::from_chars(text.data(), end, size[0]);
  if (fault != std::errc() || middle == end || *middle != 'x') return std::nullopt;
  auto const [rest, secondFault] = std::from_chars(middle + 1, end, size[1]);
  if (secondFault != std::errc() || rest != end) return std::nullopt;
  auto const isSide = [](unsigned side) { return side != 0 && side <= kMost; };
  return isSide(size[0]) && isSide(size[1]) ? std::optional(size) : std::nullopt;
}

std::string CheckSize(std::string const& text) {
  return ParseSize(text) ? "" : "needs WxH, two whole numbers above 0";
}

std::string CheckDrawnSize(std::string const& text) {
  auto const size = ParseSize(text);
  if (!size) return CheckSize(text);
  auto const [width, height] = *size;
  bool const isSmall = width <= renderer::kMostSide && height <= renderer::kMostSide &&
                       std::uint64_t{width} * height <= renderer::kMostPixels;
  return isSmall ? "" : "is too large: 16384 pixels a side and 33554432 in all are the most";
}

}  // namespace corvanta::app
