#pragma once

#include <cstdint>

// Whether the heap is a sanitizer's, which reserves addresses beyond all limits.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define CORVANTA_HAS_SANITIZED_HEAP
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define CORVANTA_HAS_SANITIZED_HEAP
#endif
#endif

namespace corvanta::platform::child {

/// With such a heap: ends the process once more than `bytes` are allocated at a time. In other
/// builds false, with nothing done.
bool LimitAllocations(std::uint64_t bytes);

}  // namespace corvanta::platform::child
