#pragma once

#include <functional>

#include "corvanta/platform/decode_messages.h"
#include "corvanta/platform/descriptor.h"

namespace corvanta::decoder {

/// Decodes what a request asks for: the picture in `file`, into the shared memory that is mapped
/// (shared_blocks.h), which is unmapped then if the picture is a large one. `tell`
/// is called with what the header claims, before the pixels are decoded.
/// Fails: the answer's state is kDecodeFailed, and its text says why. A file may do anything to the
/// decoder, so that this is only to be called where that does no harm.
platform::NDecodeAnswer AnswerRequest(
    platform::NDecodeRequest const& request, platform::NDescriptor file,
    std::function<void(platform::NDecodeAnswer const&)> const& tell);

}  // namespace corvanta::decoder
