#pragma once

#include <filesystem>
#include <string_view>

namespace corvanta::app {

/// Writes a file that is there as a whole or, at every moment before and after a failure, not at
/// all; what stood at `path` stays until then. What isn't a plain file, such as a pipe, is written
/// to as it is.
/// Fails: false where it can't be written.
bool WriteWholeFile(std::filesystem::path const& path, std::string_view bytes);

}  // namespace corvanta::app
