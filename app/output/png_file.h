#pragma once

#include <filesystem>

#include "corvanta/renderer/NPixels.h"

namespace corvanta::app {

/// Writes the picture as a PNG file, which is there as a whole or not at all.
/// Fails: throws std::runtime_error if it can't be written.
void WritePng(std::filesystem::path const& path, renderer::NPixels const& pixels);

}  // namespace corvanta::app
