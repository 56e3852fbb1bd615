#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "corvanta/platform/descriptor.h"

/// What the fuzz targets share. A target is one source that defines LLVMFuzzerTestOneInput.
namespace corvanta::fuzz {

using Bytes = std::span<std::uint8_t const>;

/// Ends the process, which both the fuzzer and the plain driver take for a finding.
inline void Require(bool holds, char const* what) {
  if (holds) return;
  std::fprintf(stderr, "fuzz: this doesn't hold: %s\n", what);
  std::abort();
}

inline std::string_view AsText(Bytes bytes) {
  return {reinterpret_cast<char const*>(bytes.data()), bytes.size()};
}

/// Takes values from the front of the input, zeros once that is used up.
class Input {
 public:
  explicit Input(Bytes bytes) : m_rest(bytes) {}

  template <class T>
  T Take() {
    T value{};
    Bytes const taken = TakeBytes(sizeof(T));
    auto* const to = reinterpret_cast<unsigned char*>(&value);
    for (std::size_t i = 0; i != taken.size(); ++i) to[i] = taken[i];
    return value;
  }
  Bytes TakeBytes(std::size_t count) {
    Bytes const taken = m_rest.first(std::min(count, m_rest.size()));
    m_rest = m_rest.subspan(taken.size());
    return taken;
  }
  /// Up to the next zero, which is taken too.
  std::string_view TakeText() {
    std::string_view const rest = AsText(m_rest);
    std::string_view const text = rest.substr(0, rest.find('\0'));
    TakeBytes(text.size() + 1);
    return text;
  }
  Bytes GetRest() const { return m_rest; }

 private:
  Bytes m_rest;
};

/// The input as a file that is on no disk.
class MemoryFile {
 public:
  explicit MemoryFile(Bytes bytes) : m_descriptor(memfd_create("fuzz", MFD_CLOEXEC)) {
    auto const length = static_cast<ssize_t>(bytes.size());
    Require(m_descriptor && write(m_descriptor.Get(), bytes.data(), bytes.size()) == length &&
                lseek(m_descriptor.Get(), 0, SEEK_SET) == 0,
            "a file can be had");
  }

  int Get() const { return m_descriptor.Get(); }
  /// Opens as the file.
  std::wstring GetPath() const { return L"/proc/self/fd/" + std::to_wstring(m_descriptor.Get()); }

 private:
  platform::NDescriptor const m_descriptor;
};

/// A folder of this process's own, gone at its end. The library's temporary folder is made in it.
class Folder {
 public:
  Folder() {
    std::string name = std::filesystem::temp_directory_path() / "corvanta_fuzz_XXXXXX";
    Require(mkdtemp(name.data()) != nullptr, "a folder can be had");
    m_path = std::filesystem::canonical(name);
    setenv("TMPDIR", m_path.c_str(), 1);
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  Folder(Folder const&) = delete;
  Folder& operator=(Folder const&) = delete;

  std::filesystem::path const& GetPath() const { return m_path; }
  /// How many files are in it and in what is below it.
  std::size_t CountFiles() const {
    std::size_t count = 0;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(m_path))
      count += entry.is_directory() ? 0 : 1;
    return count;
  }

 private:
  std::filesystem::path m_path;
};

}  // namespace corvanta::fuzz

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);
