// corvanta-read VERSION MEMORY: reads a model file for a host that has started it. Not to be called
// by hand.
#include <malloc.h>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "corvanta/importer/process/read_messages.h"
#include "corvanta/importer/reader/NModelReader.h"
#include "corvanta/importer/reader/formats.h"
#include "corvanta/importer/reader/large_stack.h"
#include "corvanta/platform/child/child.h"
#include "corvanta/platform/child/sanitized.h"

namespace corvanta::importer::reader {
namespace {

using platform::NDescriptor;
namespace child = platform::child;

constexpr unsigned kMostFiles = 64;

// The host, which sends and receives in turn; between, its end is this program's.
class Host {
 public:
  void Work() { m_endsWithHost.emplace(); }

  void Send(NReadState state, std::string_view text = {}, std::uint64_t size = 0) {
    m_endsWithHost.reset();
    static NReadAnswer answer;
    answer.state = state;
    answer.size = size;
    answer.length = static_cast<std::uint32_t>(std::min(text.size(), sizeof answer.text));
    std::copy_n(text.begin(), answer.length, answer.text);
    if (!child::Send(&answer, sizeof answer)) _exit(0);
  }

  template <class Message>
  NDescriptor Receive(Message& message) {
    NDescriptor descriptor[1];
    if (!child::Receive(&message, sizeof message, descriptor)) _exit(0);
    return std::move(descriptor[0]);
  }

 private:
  std::optional<child::NEndsWithHost> m_endsWithHost;
};

Host& GetHost() {
  static Host host;
  return host;
}

class Opener : public NFileOpener {
 public:
  int Open(std::string const& path) override {
    GetHost().Send(kReadOpen, path);
    NOpenAnswer answer;
    NDescriptor descriptor = GetHost().Receive(answer);
    GetHost().Work();
    return descriptor.Release();
  }
};

void Fail(std::string_view reason) {
  // Some readers turn a failing allocation into an error of their own.
  bool const isMemory = reason.find("bad_alloc") != std::string_view::npos;
  GetHost().Send(isMemory ? kReadTooLarge : kReadFailed, reason);
}

// Calls `write` with the shared memory. Leaves no mapping, so that the host can take it over.
template <class Writer>
void Write(std::size_t size, NDescriptor memory, Writer const& write) {
  off_t const room = lseek(memory.Get(), 0, SEEK_END);
  if (room < 0 || size > static_cast<std::uint64_t>(room)) throw std::bad_alloc();
  void* const block =
      mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_POPULATE, memory.Get(), 0);
  if (block == MAP_FAILED) throw std::bad_alloc();
  write(static_cast<std::byte*>(block));
  munmap(block, size);
  memory = NDescriptor();
  GetHost().Send(kReadDone, {}, size);
}

// While it is set, an allocation that fails ends the program with that reason: few libraries look
// whether one has, and those that do say that the file is damaged.
bool g_tellsOfMemory = false;

// What an allocation of `size` bytes has given.
[[maybe_unused]] void* Judge(void* block, std::size_t size) {
  if (block != nullptr || size == 0 || !g_tellsOfMemory) return block;
  g_tellsOfMemory = false;
  GetHost().Send(kReadTooLarge);
  _exit(0);
}

// The lowest address of the stack on which files are read.
std::uintptr_t g_stack = 0;

// A fault at the end of the stack has that reason; others happen once more, and end the program.
void OnFault(int, siginfo_t* fault, void*) {
  constexpr std::uintptr_t kBelow = 1 << 20, kAbove = 1 << 16;
  auto const at = reinterpret_cast<std::uintptr_t>(fault->si_addr);
  if (g_stack == 0 || at < g_stack - kBelow || at >= g_stack + kAbove) return;
  GetHost().Send(kReadFailed, "it is nested too deeply for the memory that it may take");
  _exit(0);
}

[[maybe_unused]] void ListenToFaults() {
  static std::array<std::byte, std::size_t{1} << 16> room;
  stack_t other{};
  other.ss_sp = room.data();
  other.ss_size = room.size();
  pthread_attr_t attributes;
  if (sigaltstack(&other, nullptr) != 0 || pthread_getattr_np(pthread_self(), &attributes) != 0) {
    return;
  }
  void* lowest = nullptr;
  std::size_t size = 0;
  if (pthread_attr_getstack(&attributes, &lowest, &size) == 0) {
    g_stack = reinterpret_cast<std::uintptr_t>(lowest);
  }
  pthread_attr_destroy(&attributes);
  struct sigaction action {};
  action.sa_sigaction = &OnFault;
  action.sa_flags = static_cast<int>(SA_SIGINFO | SA_ONSTACK | SA_RESETHAND);
  sigaction(SIGSEGV, &action, nullptr);
}

void Serve(char const* version, std::uint64_t memory) {
#ifndef CORVANTA_HAS_SANITIZED_HEAP
  ListenToFaults();
#endif
  if (std::strcmp(version, kReaderVersion) != 0 ||
      !child::Confine(memory, kMostFiles, child::kRightsNone)) {
    _exit(2);
  }
  GetHost().Send(kReadReady);
  NReadRequest request;
  NDescriptor shared = GetHost().Receive(request);
  GetHost().Work();
  g_tellsOfMemory = true;
  try {
    std::string const path(request.path, strnlen(request.path, sizeof request.path));
    if (path.empty()) {
      std::string const formats = ListFormats();
      Write(formats.size(), std::move(shared),
            [&formats](std::byte* block) { std::memcpy(block, formats.data(), formats.size()); });
      _exit(0);
    }
    Opener opener;
    // Not taken down: the process ends.
    auto const& reader = *new NModelReader(opener, path);
    Write(reader.GetSize(), std::move(shared),
          [&reader](std::byte* block) { reader.Write(block); });
  } catch (std::bad_alloc const&) {
    GetHost().Send(kReadTooLarge);
  } catch (std::exception const& error) {
    Fail(error.what());
  } catch (...) {
    Fail("its reader gave up");
  }
  _exit(0);
}

}  // namespace
}  // namespace corvanta::importer::reader

#ifndef CORVANTA_HAS_SANITIZED_HEAP
// In place of the C library's, whose functions they call; `free` is its own.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier)
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
// NOLINTEND(bugprone-reserved-identifier)

void* malloc(std::size_t size) {
  return corvanta::importer::reader::Judge(__libc_malloc(size), size);
}
void* calloc(std::size_t count, std::size_t size) {
  return corvanta::importer::reader::Judge(__libc_calloc(count, size), size);
}
void* realloc(void* block, std::size_t size) {
  return corvanta::importer::reader::Judge(__libc_realloc(block, size), size);
}
}
#endif

// In place of the C library's: what a library asserts and doesn't hold is the file's fault.
extern "C" __attribute__((noreturn)) void __assert_fail(char const* expression, char const*,
                                                        unsigned, char const*) noexcept {
  char text[512] = "its reader expected ";
  std::strncat(text, expression, sizeof text - std::strlen(text) - 1);
  corvanta::importer::reader::GetHost().Send(corvanta::importer::kReadFailed, text);
  _exit(0);
}

int main(int count, char** arguments) {
  if (count != 3 || !corvanta::platform::child::IsChild()) {
    std::cerr << "corvanta-read: the program corvanta starts this one to read model files; it does "
                 "nothing by itself\n";
    return 2;
  }
  std::uint64_t const memory = std::strtoull(arguments[2], nullptr, 10);
  // One heap, which grows in large steps and gives nothing back: the process ends soon.
  mallopt(M_ARENA_MAX, 1);
  mallopt(M_TOP_PAD, static_cast<int>(std::min<std::uint64_t>(16 << 20, memory / 16)));
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  // Readers recurse through hierarchies of any depth. What is mapped now isn't limited any more, so
  // that the stack's share is taken off.
  std::uint64_t const stack = std::clamp<std::uint64_t>(memory / 4, 1 << 18, 1 << 30);
  corvanta::importer::reader::RunOnLargeStack(stack, [&] {
    corvanta::importer::reader::Serve(arguments[1], memory - std::min(memory, stack));
  });
}
