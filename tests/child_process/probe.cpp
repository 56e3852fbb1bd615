#include "tests/child_process/probe.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <new>

#include "corvanta/platform/child/child.h"

namespace {

using namespace corvanta;
namespace child = platform::child;

std::uint32_t Try(long result) { return result >= 0 ? 0 : static_cast<std::uint32_t>(errno); }

std::uint32_t Fill(int memory, std::uint64_t length, bool keep) {
  void* const data = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, memory, 0);
  if (data == MAP_FAILED) return static_cast<std::uint32_t>(errno);
  std::memset(data, 7, length);
  if (!keep) munmap(data, length);
  return 0;
}

[[noreturn]] void SpinForever() {
  for (;;) asm volatile("");
}

std::uint32_t Allocate(std::uint64_t length) {
  void* const block = std::malloc(length);
  if (!block) return ENOMEM;
  std::memset(block, 1, length);
  std::free(block);
  return 0;
}

std::uint32_t Fork() {
  pid_t const pid = fork();
  if (pid == 0) _exit(0);
  return Try(pid);
}

std::uint32_t CountDescriptors() {
  std::uint32_t count = 0;
  for (int i = 0; i < 1024; ++i) count += fcntl(i, F_GETFD) >= 0;
  return count;
}

std::uint32_t Answer(probe::NMessage const& message, int descriptor) {
  switch (message.question) {
    case probe::kFill:
    case probe::kFillAndKeep:
      return Fill(descriptor, message.value, message.question == probe::kFillAndKeep);
    case probe::kCrash:
      *reinterpret_cast<int volatile*>(descriptor - descriptor) = 1;
      return 0;
    case probe::kSpin:
      SpinForever();
    case probe::kSleep:
      for (;;) pause();
    case probe::kAllocate:
      return Allocate(message.value);
    case probe::kOpenToWrite:
      return Try(open("/tmp", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
    case probe::kOpenToRead:
      return Try(open("/proc/self/stat", O_RDONLY | O_CLOEXEC));
    case probe::kConnect:
      return Try(socket(AF_UNIX, SOCK_STREAM, 0));
    case probe::kFork:
      return Fork();
    case probe::kExecute:
      return Try(execl("/bin/true", "true", nullptr));
    case probe::kDescriptors:
      return CountDescriptors();
  }
  return 0;
}

}  // namespace

// probe MEMORY RIGHTS
int main(int count, char** arguments) {
  if (count != 3 || !child::IsChild() ||
      !child::Confine(std::strtoull(arguments[1], nullptr, 10), 16,
                      static_cast<child::NRights>(std::atoi(arguments[2]))))
    return 2;
  probe::NMessage message;
  for (platform::NDescriptor descriptor;
       child::Receive(&message, sizeof message, {&descriptor, 1});) {
    {
      child::NEndsWithHost const ends;
      message.answer = Answer(message, descriptor.Get());
    }
    if (!child::Send(&message, sizeof message)) break;
  }
  _exit(0);
}
