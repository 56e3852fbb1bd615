#pragma once

#include <memory>
#include <string>

#include "corvanta/platform/decode_messages.h"
#include "corvanta/platform/descriptor.h"

/// The library's end of the decoding program: one program, which is kept for many pictures and
/// started again after its end. Any thread may ask; one question is answered at a time.
namespace corvanta::platform {

enum NDecoderOutcome : int {
  kDecoderAnswered,     ///< the answer is there
  kDecoderRefused,      ///< it failed; the reason says why
  kDecoderUnavailable,  ///< it can't be had; the reason says why
};

/// Asks for the size of the picture in `file`, an open file whose name ends in `name`.
NDecoderOutcome AskForSize(int file, std::string const& name, NDecodeAnswer& answer,
                           std::string& reason);

/// Asks for the picture; `fileLength` tells how long a format without a header may take.
NDecoderOutcome AskForPicture(int file, std::string const& name, std::uint64_t fileLength,
                              std::unique_ptr<NPicture const>& picture, std::string& reason);

}  // namespace corvanta::platform
