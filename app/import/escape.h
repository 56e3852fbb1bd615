#pragma once

#include <string>

namespace corvanta::app {

/// A URI's text with "%20" and its like as the characters that they stand for.
std::string Unescape(std::string const& text);

}  // namespace corvanta::app
