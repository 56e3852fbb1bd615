#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "corvanta/platform/descriptor.h"

/// The child's side of NChildProcess (corvanta/platform/child_process.h). Linked into the programs
/// that a host starts, never into the library.
namespace corvanta::platform::child {

/// What a confined program may still do beside computing and answering.
enum NRights : unsigned int {
  kRightsNone = 0,
  kRightsReadFiles = 1,  ///< open files and list folders, for reading alone
};

/// Whether the program runs as a child of a host: descriptor 3 is the socket of one.
bool IsChild();

/// Gives up, for good, what isn't needed to answer: at most `memory` bytes beyond what is mapped
/// now, no file to write to, no further process or thread, `files` open descriptors, no core file,
/// and, where the system can filter its calls (seccomp), none but the few that decoding needs:
/// others fail with EPERM. Call it after all libraries are loaded.
/// In a build with sanitizers, which reserve memory beyond all limits, allocations are counted.
/// Fails: false if a limit can't be set; without a filter the limits alone hold.
bool Confine(std::uint64_t memory, unsigned int files, NRights rights);

/// Waits for a message of `length` bytes and its descriptors, as many as `descriptors` has room
/// for; the others get none.
/// Fails: false when the host has gone, and for a message of another length.
bool Receive(void* bytes, std::size_t length, std::span<NDescriptor> descriptors);

/// Fails: false when the host has gone.
bool Send(void const* bytes, std::size_t length);

/// While it stands, the end of the host ends this process at once. Nothing is to be sent or
/// received meanwhile.
class NEndsWithHost {
 public:
  NEndsWithHost();
  ~NEndsWithHost();
  NEndsWithHost(NEndsWithHost const&) = delete;
  NEndsWithHost& operator=(NEndsWithHost const&) = delete;
};

}  // namespace corvanta::platform::child
