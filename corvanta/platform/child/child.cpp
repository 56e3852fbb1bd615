#include "corvanta/platform/child/child.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "corvanta/platform/child/filter.h"
#include "corvanta/platform/child/sanitized.h"

namespace corvanta::platform::child {

namespace {

constexpr int kSocket = 3;

bool Limit(__rlimit_resource resource, rlim_t most) {
  rlimit limit{};
  if (getrlimit(resource, &limit) != 0) return false;
  limit.rlim_max = limit.rlim_cur = std::min(most, limit.rlim_max);
  return setrlimit(resource, &limit) == 0;
}

// Bytes of address space in use.
std::uint64_t GetMapped() {
  unsigned long long pages = 0;
  if (std::FILE* const file = std::fopen("/proc/self/statm", "re")) {
    if (std::fscanf(file, "%llu", &pages) != 1) pages = 0;
    std::fclose(file);
  }
  return pages * static_cast<std::uint64_t>(getpagesize());
}

bool HostIsGone() {
  pollfd entry{kSocket, POLLIN, 0};
  return poll(&entry, 1, 0) > 0 && (entry.revents & POLLHUP) != 0;
}

// The signal also comes for a message: a host that has put one into the socket may be stopped
// before the signal of it is sent, and go on when the message has been read.
void OnSocket(int) {
  int const before = errno;
  if (HostIsGone()) _exit(0);
  errno = before;
}

}  // namespace

bool IsChild() {
  struct stat status;
  return fstat(kSocket, &status) == 0 && S_ISSOCK(status.st_mode);
}

bool Confine(std::uint64_t memory, unsigned int files, NRights rights) {
  bool const limited = LimitAllocations(memory) || Limit(RLIMIT_AS, GetMapped() + memory);
  bool const closed = Limit(RLIMIT_CORE, 0) && Limit(RLIMIT_FSIZE, 0) && Limit(RLIMIT_NPROC, 0) &&
                      Limit(RLIMIT_NOFILE, files);
  struct sigaction action {};
  action.sa_handler = &OnSocket;
  action.sa_flags = SA_RESTART;
  sigaction(SIGIO, &action, nullptr);
  ApplyFilter(rights);
  return limited && closed;
}

bool Receive(void* bytes, std::size_t length, std::span<NDescriptor> descriptors) {
  constexpr std::size_t kMost = 4;
  iovec part{bytes, length};
  alignas(cmsghdr) char control[CMSG_SPACE(kMost * sizeof(int))] = {};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control;
  message.msg_controllen = sizeof control;
  ssize_t count = 0;
  for (;;) {
    count = recvmsg(kSocket, &message, MSG_CMSG_CLOEXEC | MSG_TRUNC);
    pollfd entry{kSocket, POLLIN, 0};
    if (count >= 0) break;
    if (errno == EAGAIN)
      poll(&entry, 1, -1);
    else if (errno != EINTR)
      return false;
  }
  std::size_t at = 0;
  for (cmsghdr* header = CMSG_FIRSTHDR(&message); header; header = CMSG_NXTHDR(&message, header)) {
    if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS) continue;
    for (std::size_t i = 0; i < (header->cmsg_len - CMSG_LEN(0)) / sizeof(int); ++i) {
      int received = -1;
      std::memcpy(&received, CMSG_DATA(header) + i * sizeof(int), sizeof received);
      NDescriptor descriptor(received);
      if (at < descriptors.size()) descriptors[at++] = std::move(descriptor);
    }
  }
  while (at < descriptors.size()) descriptors[at++] = NDescriptor();
  return length != 0 && static_cast<std::size_t>(count) == length;
}

bool Send(void const* bytes, std::size_t length) {
  for (;;) {
    ssize_t const count = send(kSocket, bytes, length, MSG_NOSIGNAL);
    if (count >= 0) return static_cast<std::size_t>(count) == length;
    pollfd entry{kSocket, POLLOUT, 0};
    if (errno == EAGAIN)
      poll(&entry, 1, -1);
    else if (errno != EINTR)
      return false;
  }
}

// Not by the signal for a parent's death: that one comes when the thread ends that started the
// child, whatever becomes of the host.
NEndsWithHost::NEndsWithHost() {
  fcntl(kSocket, F_SETOWN, getpid());
  fcntl(kSocket, F_SETFL, O_NONBLOCK | O_ASYNC);
  // The signal comes for what happens from now on.
  if (HostIsGone()) _exit(0);
}

NEndsWithHost::~NEndsWithHost() { fcntl(kSocket, F_SETFL, O_NONBLOCK); }

}  // namespace corvanta::platform::child
