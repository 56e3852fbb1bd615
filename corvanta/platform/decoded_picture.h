#pragma once

#include <memory>

#include "corvanta/platform/decode_messages.h"
#include "corvanta/platform/shared_memory.h"

namespace corvanta::platform {

/// The picture of an answer out of the decoding program's memory, which is mapped whole: a copy, or
/// for more than kMostCopied bytes the memory itself. Nothing in the answer or the memory is
/// trusted.
/// Fails: null if it isn't a picture.
std::unique_ptr<NPicture const> TakePicture(NDescriptor const& memory,
                                            NSharedMapping const& mapping,
                                            NDecodeAnswer const& answer);

}  // namespace corvanta::platform
