#pragma once

#include <cstdint>
#include <string>

#include "corvanta/export.h"

/// What a file from anywhere may cost. All limits hold for the whole process; they may be read and
/// set from any thread, and count from the next file on.
namespace corvanta::platform {

/// Of a picture that is decoded. What is beyond them counts as unreadable.
struct NPictureLimits {
  /// The decoded picture: width x height x components x depth. Never more than 4 GiB - 1.
  std::uint64_t bytes = std::uint64_t{1} << 30;
  std::uint64_t pixels = std::uint64_t{1} << 28;
  /// Decoded bytes for each byte of the file: it can't hold more. Below `freeBytes` anything goes.
  std::uint64_t ratio = 2048;
  std::uint64_t freeBytes = std::uint64_t{64} << 20;
  /// Scans that a JPEG may have for each time that its decoded bytes count: one of 33 counts
  /// thrice.
  unsigned int scans = 16;
  /// Time for one picture, and what a picture may take beyond a plain decoding of its bytes, which
  /// is reckoned at a rate for its format.
  unsigned int milliseconds = 10000;
  unsigned int millisecondsBeyond = 2000;
  /// What the decoding program may hold at a time, the decoded picture included.
  std::uint64_t memory = std::uint64_t{3} << 30;

  friend bool operator==(NPictureLimits const&, NPictureLimits const&) = default;
};

/// Of an entry of a zip archive that is unpacked.
struct NArchiveLimits {
  std::uint64_t bytes = std::uint64_t{512} << 20;
  /// Unpacked bytes for each byte that the archive itself has. Below `freeBytes` anything goes.
  std::uint64_t ratio = 200;
  std::uint64_t freeBytes = std::uint64_t{64} << 20;

  friend bool operator==(NArchiveLimits const&, NArchiveLimits const&) = default;
};

CORVANTA_API NPictureLimits GetPictureLimits();
CORVANTA_API void SetPictureLimits(NPictureLimits const& limits);
CORVANTA_API NArchiveLimits GetArchiveLimits();
CORVANTA_API void SetArchiveLimits(NArchiveLimits const& limits);

/// The program that decodes pictures in a process of its own: where `SetDecoderProgram` put it, or
/// else libexec/corvanta/corvanta-decode in the tree in which the library is installed.
/// Fails: empty if none is found beside the library.
CORVANTA_API std::wstring GetDecoderProgram();

/// Sets another program; an empty path goes back to the one beside the library. The running one
/// ends with the next picture.
CORVANTA_API void SetDecoderProgram(std::wstring const& path);

/// Whether the library may start the program; at first it may. Without it PNG, JPEG and BMP alone
/// are decoded, in this process.
CORVANTA_API void SetDecoderProgramAllowed(bool allowed);
CORVANTA_API bool IsDecoderProgramAllowed();

/// Ends the program that decodes, if it runs; the next picture starts it again. A host that forks
/// or counts its children can call this; it ends with the host anyway.
CORVANTA_API void EndDecoderProgram();

}  // namespace corvanta::platform
