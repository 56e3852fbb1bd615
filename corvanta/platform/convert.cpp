#include "corvanta/platform/convert.h"

#include <boost/nowide/convert.hpp>

namespace corvanta::platform {

std::string ToNarrow(std::wstring_view text) {
  return boost::nowide::narrow(text.data(), text.size());
}

std::wstring ToWide(std::string_view text) {
  return boost::nowide::widen(text.data(), text.size());
}

}  // namespace corvanta::platform
