#pragma once

#include <cstdint>

#include "corvanta/platform/limits.h"
#include "corvanta/platform/picture.h"

/// What the library and the decoding program say to each other. Both come from one build: the
/// program is given the version that is wanted, and ends if it is another one.
namespace corvanta::platform {

inline constexpr char kDecoderVersion[] = "1";

/// Shared memory beyond the decoded bytes: what the decoder puts round them.
inline constexpr std::uint64_t kSharedSlack = std::uint64_t{16} << 20;

/// A picture of up to so many bytes is copied by the host, and the shared memory stays as it is for
/// the next one; with a larger picture the memory becomes the host's own.
inline constexpr std::uint64_t kMostCopied = std::uint64_t{64} << 20;

enum NDecodeKind : std::uint32_t {
  kDecodeSize = 1,  ///< asks for the size alone; comes with the file
  /// Asks for the pixels; comes with the file, and with shared memory if the program has none.
  kDecodePixels = 2,
};

struct NDecodeRequest {
  NDecodeKind kind = kDecodeSize;
  char name[60] = {};  ///< the end of the file's name
  NPictureLimits limits;
};

enum NDecodeState : std::uint32_t {
  kDecoderReady = 1,   ///< once, after the start
  kDecodeClaimed = 2,  ///< the header has been read; the answer follows
  kDecodeDone = 3,
  kDecodeFailed = 4,  ///< text says why
};

struct NDecodeAnswer {
  NDecodeState state = kDecodeFailed;
  NPictureFormat format = PF_UNKNOWN;
  NPixelType pixelType = PT_UNKNOWN;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint64_t bytes = 0;   ///< claimed, then decoded: the picture's length in the shared memory
  std::uint64_t offset = 0;  ///< where it begins there
  char text[160] = {};
};

}  // namespace corvanta::platform
