#include "corvanta/platform/shared_memory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cerrno>
#include <limits>

namespace corvanta::platform {

std::uint64_t GetSharedMemoryLimit() {
  struct rlimit limit = {};
  bool const isKnown = getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
  return isKnown ? limit.rlim_cur : std::numeric_limits<off_t>::max();
}

NDescriptor CreateSharedMemory(std::uint64_t size) {
  // A larger one would end the process by a signal.
  if (size > GetSharedMemoryLimit()) {
    errno = EFBIG;
    return NDescriptor();
  }
  NDescriptor memory(memfd_create("corvanta", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  bool const made = memory && ftruncate(memory.Get(), static_cast<off_t>(size)) == 0 &&
                    fcntl(memory.Get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW) == 0;
  return made ? std::move(memory) : NDescriptor();
}

bool FreezeSharedMemory(int memory) {
  // Without the first seals the memory could shrink under our mapping.
  constexpr int kSize = F_SEAL_SHRINK | F_SEAL_GROW;
  int const seals = fcntl(memory, F_GET_SEALS);
  return seals >= 0 && (seals & kSize) == kSize && fcntl(memory, F_ADD_SEALS, F_SEAL_WRITE) == 0;
}

NSharedMapping::NSharedMapping(int memory, std::uint64_t offset, std::size_t length) {
  struct stat status;
  if (length == 0 || fstat(memory, &status) != 0) return;
  auto const size = static_cast<std::uint64_t>(status.st_size);
  if (offset > size || length > size - offset) return;
  auto const lead = static_cast<std::size_t>(offset % static_cast<std::uint64_t>(getpagesize()));
  void* const mapped = mmap(nullptr, lead + length, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_NORESERVE, memory, static_cast<off_t>(offset - lead));
  if (mapped == MAP_FAILED) return;
  m_mapped = mapped;
  m_mappedLength = lead + length;
  m_data = static_cast<unsigned char*>(mapped) + lead;
  m_length = length;
}

NSharedMapping::~NSharedMapping() {
  if (m_mapped) munmap(m_mapped, m_mappedLength);
}

}  // namespace corvanta::platform
