#pragma once

#include <cstddef>
#include <cstdint>

#include "corvanta/export.h"
#include "corvanta/platform/descriptor.h"

/// Memory that a child process fills and the host reads. The host makes it and lets the child map
/// it, the child unmaps it and answers, the host freezes and maps it: from then on nothing that the
/// child does can change it or take it away.
namespace corvanta::platform {

/// The most that CreateSharedMemory can make: the process's limit to the size of files.
/// Units: bytes.
CORVANTA_API std::uint64_t GetSharedMemoryLimit();

/// Shared memory of `size` bytes that takes room only where it is written. Its size is fixed: no
/// process can shorten it under another one's mapping.
/// Fails: no descriptor, with errno set.
CORVANTA_API NDescriptor CreateSharedMemory(std::uint64_t size);

/// Forbids every process to write to the memory from now on.
/// Fails: false while somebody has it mapped for writing, and for a descriptor of anything else.
CORVANTA_API bool FreezeSharedMemory(int memory);

/// A part of frozen shared memory in this process. What the host writes to it stays private to it.
class CORVANTA_API NSharedMapping {
 public:
  NSharedMapping() = default;
  /// Fails: GetData is null if the part doesn't lie in the memory or can't be mapped.
  NSharedMapping(int memory, std::uint64_t offset, std::size_t length);
  NSharedMapping(NSharedMapping const&) = delete;
  NSharedMapping& operator=(NSharedMapping const&) = delete;
  ~NSharedMapping();

  unsigned char* GetData() const { return m_data; }
  std::size_t GetLength() const { return m_length; }

 private:
  void* m_mapped = nullptr;  // from the page's begin on
  std::size_t m_mappedLength = 0;
  unsigned char* m_data = nullptr;
  std::size_t m_length = 0;
};

}  // namespace corvanta::platform
