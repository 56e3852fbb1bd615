#pragma once

#include <optional>
#include <string>

namespace corvanta::platform {

/// A path as the system's calls take it.
/// Fails: nullopt for a path that holds a zero character, which would cut it short.
std::optional<std::string> ToNarrowPath(std::wstring const& path);

}  // namespace corvanta::platform
