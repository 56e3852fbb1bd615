#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include "corvanta/platform/limits.h"
#include "corvanta/platform/picture.h"
#include "corvanta/platform/picture_header.h"

/// The decoder itself. The decoding program has it for every format, the library for the few that
/// it decodes in its own process.
namespace corvanta::platform {

/// The format of a file by its content and then by its name. Only for the decoding program: it asks
/// every format's reader.
NPictureFormat JudgeFormat(std::FILE& file, std::string const& name);

/// Keeps the decoder's messages as reasons. Only for the decoding program: they are one setting a
/// process.
void ListenToDecoder();

/// From now on a picture that was written past its end ends the process, before it spoils another
/// one: `isIntact` is asked with the end of each. Only for the decoding program, whose heap can
/// tell.
void WatchOverruns(bool (*isIntact)(void const* end));

/// Called with what the file claims, or with 0 x 0 where only decoding tells, before it is decoded.
using NClaimListener = std::function<void(NPictureClaim const& claim)>;

/// The size of a picture of `length` bytes, by its header where the format has a way, else by
/// decoding it.
/// Fails: nullopt with `reason` set.
std::optional<NPictureClaim> ReadClaim(NPictureFormat format, std::FILE& file, std::uint64_t length,
                                       NPictureLimits const& limits, std::string& reason);

/// Fails: null with `reason` set.
std::unique_ptr<NPicture const> DecodeFile(NPictureFormat format, std::FILE& file,
                                           std::uint64_t length, NPictureLimits const& limits,
                                           NClaimListener const& tell, std::string& reason);

}  // namespace corvanta::platform
