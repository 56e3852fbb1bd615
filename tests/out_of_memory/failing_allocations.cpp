#include <cstdlib>

#include "tests/out_of_memory/failing_allocations.h"

namespace {
std::size_t g_successes = std::numeric_limits<std::size_t>::max();
std::size_t g_count = 0;
}  // namespace

namespace corvanta::out_of_memory {
void FailAfter(std::size_t successes) { g_successes = successes; }
std::size_t CountAllocations() { return g_count; }
}  // namespace corvanta::out_of_memory

// Not inlined, or the compiler takes malloc and free for a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++g_count;
  if (g_successes == 0) throw std::bad_alloc();
  --g_successes;
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
  try {
    return operator new(size);
  } catch (std::bad_alloc const&) {
    return nullptr;
  }
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
