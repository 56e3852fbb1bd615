#pragma once

#include <string>
#include <string_view>

#include "corvanta/export.h"

/// Wide text and its narrow form. All narrow text of the library is UTF-8, and only this file
/// knows it. Callers of the library find both functions in core::text.
namespace corvanta::platform {

/// The narrow form of `text`. What isn't a character becomes U+FFFD.
CORVANTA_API std::string ToNarrow(std::wstring_view text);

/// The wide form of `text`. Bytes that aren't UTF-8 become U+FFFD.
CORVANTA_API std::wstring ToWide(std::string_view text);

}  // namespace corvanta::platform
