#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "corvanta/platform/picture.h"

namespace corvanta::platform {

struct NPictureSize {
  unsigned int width = 0;
  unsigned int height = 0;
};

/// The size that a file claims by its first bytes, in one of the formats that the decoder can't
/// safely be asked for it: GIF (its first picture), DDS, SGI, WBMP, EXR and JPEG 2000.
/// `fileLength` is the length of the whole file. Fails: nullopt for another format, for bytes that
/// don't tell a size, and for an EXR of several parts.
std::optional<NPictureSize> PeekSize(NPictureFormat format, std::vector<unsigned char> const& bytes,
                                     std::uint64_t fileLength);

}  // namespace corvanta::platform
