#pragma once

#include <string>

#include "corvanta/export.h"

namespace corvanta::platform {

/// Writes `text` as it stands to the debug channel, which is the error stream here.
CORVANTA_API void OutputDebugString(std::wstring const& text);

}  // namespace corvanta::platform
