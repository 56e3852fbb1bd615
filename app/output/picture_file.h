#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "corvanta/renderer/NPixels.h"

namespace corvanta::app {

/// Writes the picture to `path`, or to stdout for "-", as a JPEG file if the name ends in .jpg or
/// .jpeg, and otherwise as a PNG file. It is there as a whole or not at all.
/// Fails: throws std::runtime_error if it can't be written.
/// Requires: FindPictureFault has nothing against the path.
void WritePicture(std::filesystem::path const& path, renderer::NPixels const& pixels);

/// Why a picture of that name can't be written whatever is there; empty if nothing speaks against.
/// Without an extension it is a PNG file. `isExact`: no pixel may change, as in JPEG files.
std::string FindPictureFault(std::filesystem::path const& path, bool isExact = false);

/// The extensions of pictures that WritePicture writes, without a point.
std::vector<std::string> GetWrittenExtensions();

/// A format of pictures that can be read.
struct NPictureFileFormat {
  std::string name;
  std::vector<std::string> extensions;  // without a point
};
/// Those that the decoder knows; none where the program was built without one.
std::vector<NPictureFileFormat> GetPictureFormats();

}  // namespace corvanta::app
