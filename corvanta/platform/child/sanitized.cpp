#include "corvanta/platform/child/sanitized.h"

#ifdef CORVANTA_HAS_SANITIZED_HEAP

#include <unistd.h>

#include <atomic>
#include <cstddef>

// The sanitizers' own interface, whose header not every compiler brings along.
extern "C" {
int __sanitizer_install_malloc_and_free_hooks(void (*onAllocate)(void const volatile*, std::size_t),
                                              void (*onFree)(void const volatile*));
std::size_t __sanitizer_get_allocated_size(void const volatile* block);
}

namespace corvanta::platform::child {

namespace {

std::uint64_t most = UINT64_MAX;
std::atomic<std::uint64_t> used{0};

void OnAllocate(void const volatile*, std::size_t bytes) {
  constexpr int kOutOfMemory = 3;
  if (used.fetch_add(bytes) + bytes > most) _exit(kOutOfMemory);
}

void OnFree(void const volatile* block) {
  std::size_t const bytes = __sanitizer_get_allocated_size(block);
  // What was allocated before the count began isn't in it.
  std::uint64_t before = used.load();
  while (!used.compare_exchange_weak(before, before < bytes ? 0 : before - bytes)) continue;
}

}  // namespace

bool LimitAllocations(std::uint64_t bytes) {
  most = bytes;
  return __sanitizer_install_malloc_and_free_hooks(&OnAllocate, &OnFree) != 0;
}

}  // namespace corvanta::platform::child

#else

namespace corvanta::platform::child {

bool LimitAllocations(std::uint64_t) { return false; }

}  // namespace corvanta::platform::child

#endif
