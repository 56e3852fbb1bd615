#include "corvanta/platform/child/sanitized.h"

#ifdef __SANITIZE_ADDRESS__
#define CORVANTA_HAS_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CORVANTA_HAS_ADDRESS_SANITIZER
#endif
#endif

#ifdef CORVANTA_HAS_ADDRESS_SANITIZER
#include <sanitizer/allocator_interface.h>
#include <unistd.h>

#include <atomic>
#endif

namespace corvanta::platform::child {

#ifdef CORVANTA_HAS_ADDRESS_SANITIZER

namespace {

std::uint64_t most = UINT64_MAX;
std::atomic<std::uint64_t> used{0};

void OnAllocate(void const volatile*, std::size_t bytes) {
  constexpr int kOutOfMemory = 3;
  if (used.fetch_add(bytes) + bytes > most) _exit(kOutOfMemory);
}

void OnFree(void const volatile* block) {
  std::size_t const bytes = __sanitizer_get_allocated_size(const_cast<void const*>(block));
  // What was allocated before the count began isn't in it.
  std::uint64_t before = used.load();
  while (!used.compare_exchange_weak(before, before < bytes ? 0 : before - bytes)) continue;
}

}  // namespace

bool LimitAllocations(std::uint64_t bytes) {
  most = bytes;
  return __sanitizer_install_malloc_and_free_hooks(&OnAllocate, &OnFree) != 0;
}

#else

bool LimitAllocations(std::uint64_t) { return false; }

#endif

}  // namespace corvanta::platform::child
