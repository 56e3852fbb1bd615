#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace corvanta::decoder {

/// The shared memory of this process, at one place. While a picture is decoded, the process's large
/// allocations lie in it, so that the picture needn't be copied: malloc and its like are this
/// program's own for that. Its pages stay from picture to picture, since taking new ones costs more
/// than decoding many a picture does.
/// In a build with sanitizers, whose allocator stays, nothing lies there by itself.

/// Sets `length` bytes of addresses apart, once.
/// Fails: false.
bool ReserveSharedBlocks(std::uint64_t length);

/// Maps that memory in place of the one before.
/// Fails: false.
bool MapSharedBlocks(int memory);

/// Once the picture's own blocks are freed: what is kept of the memory, for a picture of `length`
/// bytes at `offset`, 0 for none. A large one's memory is left to the host and unmapped, with
/// nothing else in it; of other memory only the begin stays.
/// Returns where the picture is then.
std::uint64_t SettleSharedBlocks(std::uint64_t offset, std::uint64_t length);

/// While it stands, large allocations lie in the shared memory.
class NSharedBlocks {
 public:
  NSharedBlocks();
  ~NSharedBlocks();
  NSharedBlocks(NSharedBlocks const&) = delete;
  NSharedBlocks& operator=(NSharedBlocks const&) = delete;

  bool IsMapped() const;
  /// Where a block is in the memory; nullopt if it isn't there.
  std::optional<std::uint64_t> GetOffset(void const* block) const;
  /// Room for `length` bytes at an address divisible by 16; null if there is none.
  void* Allocate(std::size_t length);
};

/// Whether the block that ends at `end` hasn't been written past. All blocks of malloc and its like
/// have a guard behind them.
bool HasGuard(void const* end);

}  // namespace corvanta::decoder
