#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

#include "corvanta/platform/limits.h"
#include "corvanta/platform/picture.h"

/// What a picture file says of itself, read without the decoder. Nothing here takes memory by what
/// a file says.
namespace corvanta::platform {

struct NPictureClaim {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t bits = 8;        ///< a pixel, decoded
  std::uint32_t scans = 1;       ///< passes over the whole picture
  std::uint64_t otherBytes = 0;  ///< what decoding unpacks beside the pixels

  /// All of it, decoded.
  std::uint64_t GetBytes() const;
};

/// The format that the content tells, where its decoding or its size is a matter of this process:
/// PNG, JPEG, BMP, GIF, DDS, SGI, EXR, JPEG 2000. PF_UNKNOWN for all others.
NPictureFormat JudgeContent(std::FILE& file);

/// The claim of a file of `length` bytes in one of those formats, or WBMP, by its header alone.
/// Leaves the position in the file anywhere.
/// Fails: nullopt for another format, for bytes that don't tell a size, and for an EXR of several
/// parts.
std::optional<NPictureClaim> PeekClaim(NPictureFormat format, std::FILE& file,
                                       std::uint64_t length);

/// Adds what only the whole file tells: the scans of a JPEG, the packed texts of a PNG.
void AddWork(NPictureFormat format, std::FILE& file, std::uint64_t length, NPictureClaim& claim);

/// Whether a JPEG's marker of that code has a segment with a length, as the decoder takes it:
/// behind a marker that it doesn't know it looks for the next one at once.
bool HasJpegContent(unsigned code);

/// Why a picture of that claim in a file of `length` bytes is beyond the limits; empty if it isn't.
std::string JudgeClaim(NPictureClaim const& claim, std::uint64_t length,
                       NPictureLimits const& limits);

/// The limit on decoded bytes, as far as an unsigned int counts.
std::uint64_t GetMostBytes(NPictureLimits const& limits);

}  // namespace corvanta::platform
