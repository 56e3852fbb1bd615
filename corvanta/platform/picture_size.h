#pragma once

#include <optional>
#include <vector>

#include "corvanta/platform/picture.h"

namespace corvanta::platform {

struct NPictureSize {
  unsigned int width = 0;
  unsigned int height = 0;
};

/// The size that the bytes of a file claim, in one of the formats that the decoder can't ask for it
/// without taking the memory first: GIF (its first picture), DDS, SGI, IFF, WBMP and JPEG 2000.
/// Fails: nullopt for another format, and for bytes that don't tell a size.
std::optional<NPictureSize> PeekSize(NPictureFormat format,
                                     std::vector<unsigned char> const& bytes);

}  // namespace corvanta::platform
