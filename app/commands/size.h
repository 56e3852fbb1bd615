#pragma once

#include <array>
#include <optional>
#include <string>

namespace corvanta::app {

/// "WxH" with two whole numbers above 0, in pixels.
std::optional<std::array<unsigned, 2>> ParseSize(std::string const& text);
/// What is wrong with a size; empty if it can be read.
std::string CheckSize(std::string const& text);
/// The same for a picture that is drawn, which can't be as large as memory allows.
std::string CheckDrawnSize(std::string const& text);

}  // namespace corvanta::app
