#pragma once

#include <cstdint>

namespace corvanta::probe {

/// What the program is asked: each gives an answer unless the question ends it.
enum NQuestion : std::uint32_t {
  kFill,         ///< fills the shared memory that comes with it, and unmaps it
  kFillAndKeep,  ///< the same, and leaves it mapped
  kCrash,        ///< writes where nothing is
  kSpin,         ///< never ends
  kSleep,        ///< never ends, and uses no processor
  kAllocate,     ///< takes memory, `value` bytes, and writes to it
  kOpenToWrite,  ///< each answers with 0 where it could, and else with errno
  kOpenToRead,
  kConnect,
  kFork,
  kExecute,
  kDescriptors,  ///< answers with how many are open
};

struct NMessage {
  NQuestion question = kFill;
  std::uint32_t answer = 0;
  std::uint64_t value = 0;
};

}  // namespace corvanta::probe
