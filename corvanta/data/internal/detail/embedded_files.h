#pragma once

#include <cstddef>
#include <string>

#include "corvanta/core/uri/NPath.h"

namespace corvanta::data::internal::detail {

/// The bytes of resource/ywefe.png and resource/ewasd.png, in sources that the build makes of them.
extern unsigned char const kYwefe[14353];
extern unsigned char const kEwasd[35329];

/// Writes a file of that name in the temporary folder, where it stays.
/// Fails: an empty path.
core::uri::NPath WriteResourceFile(std::wstring const& name, void const* bytes, std::size_t length);

}  // namespace corvanta::data::internal::detail
