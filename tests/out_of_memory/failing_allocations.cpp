#include <cstdlib>

#include "tests/out_of_memory/failing_allocations.h"

namespace {
std::size_t g_successes = std::numeric_limits<std::size_t>::max();
bool g_failsOnce = false;
bool g_hasFailed = false;
std::size_t g_count = 0;
std::size_t g_freed = 0;

void Free(void* memory) noexcept {
  if (memory != nullptr) ++g_freed;
  std::free(memory);
}
}  // namespace

namespace corvanta::out_of_memory {
void FailAfter(std::size_t successes, bool failsOnce) {
  g_successes = successes;
  g_failsOnce = failsOnce;
  g_hasFailed = false;
}
void NeverFail() { g_successes = std::numeric_limits<std::size_t>::max(); }
bool HasFailed() { return g_hasFailed; }
std::size_t CountAllocations() { return g_count; }
std::size_t CountAlive() { return g_count - g_freed; }
}  // namespace corvanta::out_of_memory

// Not inlined, or the compiler takes malloc and free for a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size) {
  if (g_successes == 0) {
    g_hasFailed = true;
    if (g_failsOnce) corvanta::out_of_memory::NeverFail();
    throw std::bad_alloc();
  }
  --g_successes;
  void* const memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  ++g_count;
  return memory;
}
[[gnu::noinline]] void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
  try {
    return operator new(size);
  } catch (std::bad_alloc const&) {
    return nullptr;
  }
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { Free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { Free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::nothrow_t const&) noexcept {
  Free(memory);
}
