#pragma once

#include <memory>
#include <string>
#include <vector>

#include "corvanta/platform/picture.h"

namespace corvanta::platform {

/// Decodes the content of a PNG, JPEG or BMP file in this process, where no other one may. What
/// isn't pixels in it is taken out before.
/// Fails: null with `reason` set, for every other format too.
std::unique_ptr<NPicture const> DecodeHere(std::vector<unsigned char> bytes, std::string& reason);

}  // namespace corvanta::platform
