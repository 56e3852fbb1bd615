#pragma once

#include <cstdint>

namespace corvanta::platform::child {

/// In a build with the address sanitizer: ends the process once more than `bytes` are allocated at
/// a time. In other builds false, with nothing done.
bool LimitAllocations(std::uint64_t bytes);

}  // namespace corvanta::platform::child
