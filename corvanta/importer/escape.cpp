#include "corvanta/importer/escape.h"

#include <cctype>
#include <cstdlib>

namespace corvanta::importer {

std::string Unescape(std::string const& text) {
  std::string result;
  for (std::size_t i = 0; i != text.size(); ++i) {
    auto const digit = [&](std::size_t at) {
      return at < text.size() && std::isxdigit(static_cast<unsigned char>(text[at])) != 0;
    };
    if (text[i] == '%' && digit(i + 1) && digit(i + 2)) {
      result += static_cast<char>(std::strtol(text.substr(i + 1, 2).c_str(), nullptr, 16));
      i += 2;
    } else {
      result += text[i];
    }
  }
  return result;
}

}  // namespace corvanta::importer
