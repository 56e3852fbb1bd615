#include "corvanta/platform/debug.h"

#include <cstdio>

#include "corvanta/core/text/convert.h"

namespace corvanta::platform {

void OutputDebugString(std::wstring const& text) {
  std::string const narrow = core::text::ToNarrow(text);
  std::fwrite(narrow.data(), 1, narrow.size(), stderr);
}

}  // namespace corvanta::platform
