#pragma once

#if __has_include(<sys/single_threaded.h>)
#include <sys/single_threaded.h>
#define CORVANTA_KNOWS_SINGLE_THREADED
#endif

namespace corvanta::core::reference_countable::detail {

/// Whether this process has never started a second thread. A count is then changed by a plain load
/// and store, which costs a fifth of a locked instruction.
inline bool IsSingleThreaded() noexcept {
#if defined(CORVANTA_KNOWS_SINGLE_THREADED)
  return __libc_single_threaded;
#else
  return false;
#endif
}

}  // namespace corvanta::core::reference_countable::detail

#undef CORVANTA_KNOWS_SINGLE_THREADED
