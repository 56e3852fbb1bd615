#include "decoder/shared_blocks.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "corvanta/platform/child/sanitized.h"
#include "corvanta/platform/decode_messages.h"

namespace corvanta::decoder {

namespace {

// A block is preceded by its length. The last one goes when it is freed; the others stay until the
// picture is done.
struct Arena {
  static constexpr std::size_t kHead = 16;

  unsigned char* reserved = nullptr;
  std::uint64_t reservedLength = 0;
  std::uint64_t length = 0;  // of what is mapped
  std::uint64_t end = 0;     // of the last block
  std::uint64_t used = 0;    // the furthest end: what lies behind it is zero
  bool isOpen = false;

  bool Holds(void const* block) const {
    auto const* const byte = static_cast<unsigned char const*>(block);
    return byte >= reserved && byte < reserved + reservedLength;
  }

  void* Allocate(std::size_t size) {
    if (!isOpen || size > length || length - size < end + 2 * kHead) return nullptr;
    unsigned char* const block = reserved + end + kHead;
    std::memcpy(block - kHead, &size, sizeof size);
    end += kHead + (size + kHead - 1) / kHead * kHead;
    Populate(used, end);
    used = std::max(used, end);
    return block;
  }

  // Takes new pages at once, which costs less than taking each where it is first written. They are
  // written anyway: the decoder clears its pictures.
  void Populate(std::uint64_t from, std::uint64_t to) const {
    constexpr std::uint64_t kWorthIt = std::uint64_t{1} << 20;
    auto const page = static_cast<std::uint64_t>(getpagesize());
    from = (from + page - 1) / page * page;
    if (to >= from + kWorthIt)
      madvise(reserved + from, (to - from) / page * page, MADV_POPULATE_WRITE);
  }

  static std::size_t GetSize(void const* block) {
    std::size_t size = 0;
    std::memcpy(&size, static_cast<unsigned char const*>(block) - kHead, sizeof size);
    return size;
  }

  void Free(void* block) {
    auto const begin = static_cast<std::uint64_t>(static_cast<unsigned char*>(block) - reserved);
    if (isOpen && begin + (GetSize(block) + kHead - 1) / kHead * kHead == end) end = begin - kHead;
  }
};

constinit Arena arena;

// Gives back the pages of a part.
void Discard(std::uint64_t from, std::uint64_t to) {
  if (from < to) madvise(arena.reserved + from, to - from, MADV_REMOVE);
}

std::uint64_t RoundUp(std::uint64_t offset) {
  auto const page = static_cast<std::uint64_t>(getpagesize());
  return (offset + page - 1) / page * page;
}

}  // namespace

bool ReserveSharedBlocks(std::uint64_t length) {
  void* const begin =
      mmap(nullptr, length, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (begin == MAP_FAILED) return false;
  arena.reserved = static_cast<unsigned char*>(begin);
  arena.reservedLength = length;
  return true;
}

bool MapSharedBlocks(int memory) {
  // By a seek: the C library's fstat makes a call that takes paths, which the filter refuses.
  off_t const end = lseek(memory, 0, SEEK_END);
  arena.length = arena.used = 0;
  if (end <= 0 || static_cast<std::uint64_t>(end) > arena.reservedLength) return false;
  auto const length = static_cast<std::uint64_t>(end);
  if (mmap(arena.reserved, length, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, memory, 0) ==
      MAP_FAILED)
    return false;
  arena.length = length;
  return true;
}

std::uint64_t SettleSharedBlocks(std::uint64_t offset, std::uint64_t length) {
  constexpr std::uint64_t kKept = platform::kMostCopied + Arena::kHead;
  std::uint64_t const used = std::min(RoundUp(arena.used), arena.length);
  if (length > platform::kMostCopied) {
    std::uint64_t const page = RoundUp(1);
    Discard(0, offset / page * page);
    Discard(RoundUp(offset + length), used);
    mmap(arena.reserved, arena.reservedLength, PROT_NONE,
         MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED, -1, 0);
    arena.length = arena.used = 0;
    return offset;
  }
  if (offset + length > kKept) {
    // The rows' address stays divisible by 16.
    std::uint64_t const begin = offset % Arena::kHead;
    std::memmove(arena.reserved + begin, arena.reserved + offset, length);
    offset = begin;
  }
  Discard(RoundUp(kKept), used);
  arena.used = std::min(arena.used, RoundUp(kKept));
  return offset;
}

NSharedBlocks::NSharedBlocks() {
  arena.end = 0;
  arena.isOpen = true;
}

NSharedBlocks::~NSharedBlocks() { arena.isOpen = false; }

bool NSharedBlocks::IsMapped() const { return arena.length != 0; }

std::optional<std::uint64_t> NSharedBlocks::GetOffset(void const* block) const {
  if (!arena.Holds(block)) return std::nullopt;
  return static_cast<std::uint64_t>(static_cast<unsigned char const*>(block) - arena.reserved);
}

void* NSharedBlocks::Allocate(std::size_t length) { return arena.Allocate(length); }

}  // namespace corvanta::decoder

// The heap beneath: the C library's own, under the names that it keeps for such cases, or a
// sanitizer's.
extern "C" {
#ifdef CORVANTA_HAS_SANITIZED_HEAP
void* __interceptor_malloc(std::size_t length);
void* __interceptor_calloc(std::size_t count, std::size_t length);
void* __interceptor_realloc(void* block, std::size_t length);
void __interceptor_free(void* block);
#else
void* __libc_malloc(std::size_t length);
void* __libc_calloc(std::size_t count, std::size_t length);
void* __libc_realloc(void* block, std::size_t length);
void __libc_free(void* block);
#endif
}

namespace {

#ifdef CORVANTA_HAS_SANITIZED_HEAP
constexpr auto kAllocate = &__interceptor_malloc;
constexpr auto kAllocateZeros = &__interceptor_calloc;
constexpr auto kReallocate = &__interceptor_realloc;
constexpr auto kFree = &__interceptor_free;
constexpr std::size_t kLarge = SIZE_MAX;
#else
constexpr auto kAllocate = &__libc_malloc;
constexpr auto kAllocateZeros = &__libc_calloc;
constexpr auto kReallocate = &__libc_realloc;
constexpr auto kFree = &__libc_free;
// Below it a copy costs less than pages of their own do.
constexpr std::size_t kLarge = 256 * 1024;
#endif

using corvanta::decoder::arena;

// What stands behind each block, so that it shows if one was written past.
constexpr unsigned char kGuard[16] = {0xa7, 0x1e, 0xc9, 0x53, 0x8d, 0x62, 0xf4, 0x3b,
                                      0xd1, 0x96, 0x4f, 0x7a, 0xe5, 0x28, 0xbc, 0x61};
constexpr std::size_t kMost = SIZE_MAX / 2;

void* Guard(void* block, std::size_t length) {
  if (block) std::memcpy(static_cast<unsigned char*>(block) + length, kGuard, sizeof kGuard);
  return block;
}

void* AllocateLarge(std::size_t length) {
  return length >= kLarge ? arena.Allocate(length + sizeof kGuard) : nullptr;
}

}  // namespace

bool corvanta::decoder::HasGuard(void const* end) {
  return std::memcmp(end, kGuard, sizeof kGuard) == 0;
}

extern "C" void* malloc(std::size_t length) {
  if (length > kMost) return nullptr;
  void* const block = AllocateLarge(length);
  return Guard(block ? block : kAllocate(length + sizeof kGuard), length);
}

extern "C" void* calloc(std::size_t count, std::size_t size) {
  std::size_t length = 0;
  if (__builtin_mul_overflow(count, size, &length) || length > kMost) return nullptr;
  std::uint64_t const used = arena.used;
  void* const block = AllocateLarge(length);
  if (!block) return Guard(kAllocateZeros(1, length + sizeof kGuard), length);
  auto const begin =
      static_cast<std::uint64_t>(static_cast<unsigned char*>(block) - arena.reserved);
  if (begin < used) std::memset(block, 0, std::min<std::uint64_t>(length, used - begin));
  return Guard(block, length);
}

extern "C" void free(void* block) { arena.Holds(block) ? arena.Free(block) : kFree(block); }

extern "C" void* realloc(void* block, std::size_t length) {
  if (!block) return malloc(length);
  if (length > kMost) return nullptr;
  if (length == 0) {
    free(block);
    return nullptr;
  }
  if (!arena.Holds(block)) return Guard(kReallocate(block, length + sizeof kGuard), length);
  void* const next = malloc(length);
  if (!next) return nullptr;
  std::memcpy(next, block,
              std::min(length, corvanta::decoder::Arena::GetSize(block) - sizeof kGuard));
  free(block);
  return next;
}
