#include "corvanta/platform/file.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>
#include <cstring>
#include <optional>

#include "corvanta/platform/convert.h"
#include "corvanta/platform/descriptor.h"
#include "corvanta/platform/narrow_path.h"

namespace corvanta::platform {

namespace {

std::optional<struct stat> GetStatus(std::wstring const& path) {
  std::optional<std::string> const narrow = ToNarrowPath(path);
  struct stat status;
  if (!narrow || stat(narrow->c_str(), &status) != 0) return std::nullopt;
  return status;
}

}  // namespace

std::optional<std::string> ToNarrowPath(std::wstring const& path) {
  if (path.find(L'\0') != std::wstring::npos) return std::nullopt;
  return ToNarrow(path);
}

NFile OpenFile(std::wstring const& path) {
  std::optional<struct stat> status = GetStatus(path);
  std::optional<std::string> const narrow = ToNarrowPath(path);
  if (!narrow || !status || !S_ISREG(status->st_mode)) return nullptr;
  // Something else may stand there by now.
  NDescriptor descriptor(open(narrow->c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!descriptor || fstat(descriptor.Get(), &*status) != 0 || !S_ISREG(status->st_mode))
    return nullptr;
  NFile file(fdopen(descriptor.Get(), "rb"));
  if (file) descriptor.Release();
  return file;
}

bool ReadFile(std::wstring const& path, std::vector<unsigned char>& bytes) {
  NFile const file = OpenFile(path);
  struct stat status;
  if (!file || fstat(fileno(file.get()), &status) != 0) return false;
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  // The size is a hint alone: some files report 0, and a file may be growing. Only a short read
  // ends it.
  std::size_t length = 0;
  std::size_t step = static_cast<std::size_t>(status.st_size) + 1;
  for (;;) {
    bytes.resize(length + step);
    std::size_t const count = std::fread(bytes.data() + length, 1, step, file.get());
    length += count;
    if (count < step) break;
    step = length;
  }
  bytes.resize(length);
  return std::ferror(file.get()) == 0;
}

bool Exists(std::wstring const& path) { return GetStatus(path).has_value(); }

long long GetFileSize(std::wstring const& path) {
  std::optional<struct stat> const status = GetStatus(path);
  return status && S_ISREG(status->st_mode) ? status->st_size : -1;
}

std::wstring GetLibraryFolder() {
  // Any address inside the library does.
  static char const here = 0;
  Dl_info info{};
  std::string name = "/proc/self/exe";
  // A program is reported by the name it was called by, which may have been looked up along PATH.
  if (dladdr(&here, &info) != 0 && info.dli_fname && std::strchr(info.dli_fname, '/'))
    name = info.dli_fname;
  std::unique_ptr<char, decltype(&std::free)> const real(realpath(name.c_str(), nullptr),
                                                         &std::free);
  if (!real) return {};
  std::string const path = real.get();
  return ToWide(path.substr(0, path.find_last_of('/') + 1));
}

}  // namespace corvanta::platform
