// corvanta-read VERSION MEMORY: reads a model file for a host that has started it. Not to be called
// by hand.
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <limits>
#include <new>
#include <optional>
#include <string_view>

#include "corvanta/importer/process/read_messages.h"
#include "corvanta/importer/reader/NModelReader.h"
#include "corvanta/importer/reader/large_stack.h"
#include "corvanta/platform/child/child.h"

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

// Leaves no mapping, so that the host can take the memory over.
void Write(NModelReader const& reader, NDescriptor memory) {
  std::size_t const size = reader.GetSize();
  off_t const room = lseek(memory.Get(), 0, SEEK_END);
  if (room < 0 || size > static_cast<std::uint64_t>(room)) throw std::bad_alloc();
  void* const block =
      mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_POPULATE, memory.Get(), 0);
  if (block == MAP_FAILED) throw std::bad_alloc();
  reader.Write(static_cast<std::byte*>(block));
  munmap(block, size);
  memory = NDescriptor();
  GetHost().Send(kReadDone, {}, size);
}

void Serve(char const* version, std::uint64_t memory) {
  if (std::strcmp(version, kReaderVersion) != 0 ||
      !child::Confine(memory, kMostFiles, child::kRightsNone)) {
    _exit(2);
  }
  GetHost().Send(kReadReady);
  NReadRequest request;
  NDescriptor shared = GetHost().Receive(request);
  GetHost().Work();
  try {
    std::string const path(request.path, strnlen(request.path, sizeof request.path));
    Opener opener;
    // Not taken down: the process ends.
    auto const& reader = *new NModelReader(opener, path);
    Write(reader, std::move(shared));
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
