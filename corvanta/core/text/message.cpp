#include "corvanta/core/text/message.h"

#include <array>
#include <charconv>
#include <cmath>

namespace corvanta::core::text {

namespace {

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

template <class Number>
std::string Shortest(Number value) {
  std::array<char, 64> buffer{};
  char* const limit = buffer.data() + buffer.size();
  // Without an exponent where that stays readable.
  Number const size = std::abs(value);
  bool const isPlain = value == 0 || (size >= Number(1e-5) && size < Number(1e15));
  auto const end = isPlain
                       ? std::to_chars(buffer.data(), limit, value, std::chars_format::fixed).ptr
                       : std::to_chars(buffer.data(), limit, value).ptr;
  return {buffer.data(), end};
}

}  // namespace

std::string OneLine(std::string_view text) {
  std::string line(text);
  for (char& c : line) {
    if (IsControl(c)) c = ' ';
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

std::string Quoted(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string quoted = "\"";
  for (char const c : text) {
    if (IsControl(c)) {
      auto const code = static_cast<unsigned char>(c);
      quoted += "\\x";
      quoted += kDigits[code >> 4];
      quoted += kDigits[code & 15];
    } else {
      if (c == '"' || c == '\\') quoted += '\\';
      quoted += c;
    }
  }
  return quoted + '"';
}

std::string NumberText(double value) {
  // Without this a NaN may come out with a sign.
  return std::isnan(value) ? "nan" : Shortest(value);
}

std::string NumberText(float value) { return std::isnan(value) ? "nan" : Shortest(value); }

std::string Plural(std::size_t count, char const* one, char const* many) {
  return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

}  // namespace corvanta::core::text
