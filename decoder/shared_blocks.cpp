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
    used = std::max(used, end);
    return block;
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

#ifndef CORVANTA_HAS_SANITIZED_HEAP

// The C library's own, under the names that it keeps for such cases.
extern "C" {
void* __libc_malloc(std::size_t length);
void* __libc_calloc(std::size_t count, std::size_t length);
void* __libc_realloc(void* block, std::size_t length);
void __libc_free(void* block);
}

namespace {

// Below it a copy costs less than pages of their own do.
constexpr std::size_t kLarge = 256 * 1024;

void* AllocateLarge(std::size_t length) {
  return length >= kLarge ? corvanta::decoder::arena.Allocate(length) : nullptr;
}

}  // namespace

extern "C" void* malloc(std::size_t length) {
  void* const block = AllocateLarge(length);
  return block ? block : __libc_malloc(length);
}

extern "C" void* calloc(std::size_t count, std::size_t size) {
  using corvanta::decoder::arena;
  std::size_t length = 0;
  std::uint64_t const used = arena.used;
  void* const block =
      __builtin_mul_overflow(count, size, &length) ? nullptr : AllocateLarge(length);
  if (!block) return __libc_calloc(count, size);
  auto const begin =
      static_cast<std::uint64_t>(static_cast<unsigned char*>(block) - arena.reserved);
  if (begin < used) std::memset(block, 0, std::min<std::uint64_t>(length, used - begin));
  return block;
}

extern "C" void free(void* block) {
  using corvanta::decoder::arena;
  arena.Holds(block) ? arena.Free(block) : __libc_free(block);
}

extern "C" void* realloc(void* block, std::size_t length) {
  using corvanta::decoder::arena;
  if (!block) return malloc(length);
  if (!arena.Holds(block)) return __libc_realloc(block, length);
  void* const next = length == 0 ? nullptr : malloc(length);
  if (next) std::memcpy(next, block, std::min(length, arena.GetSize(block)));
  if (next || length == 0) free(block);
  return next;
}

#endif
