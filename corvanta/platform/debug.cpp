#include "corvanta/platform/debug.h"

#include <cstdio>

#include "corvanta/platform/convert.h"

namespace corvanta::platform {

void OutputDebugString(std::wstring const& text) {
  std::string const narrow = ToNarrow(text);
  std::fwrite(narrow.data(), 1, narrow.size(), stderr);
}

}  // namespace corvanta::platform
