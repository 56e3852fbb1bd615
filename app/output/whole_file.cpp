#include "app/output/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

namespace corvanta::app {

namespace {

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t const count = write(file, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool WriteTo(std::filesystem::path const& path, std::string_view bytes, int flags) {
  int const file = open(path.c_str(), O_WRONLY | O_CLOEXEC | flags, 0666);
  if (file < 0) return false;
  bool const isWritten = WriteAll(file, bytes);
  return (close(file) == 0) && isWritten;
}

// A file without a name goes with the process that made it, however that ends.
bool WriteNameless(std::filesystem::path const& folder, std::filesystem::path const& aside,
                   std::string_view bytes) {
  int const file = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
  if (file < 0) return false;
  std::string const itself = "/proc/self/fd/" + std::to_string(file);
  bool const isWritten = WriteAll(file, bytes) && linkat(AT_FDCWD, itself.c_str(), AT_FDCWD,
                                                         aside.c_str(), AT_SYMLINK_FOLLOW) == 0;
  close(file);
  return isWritten;
}

}  // namespace

bool WriteWholeFile(std::filesystem::path const& path, std::string_view bytes) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
    return !S_ISDIR(status.st_mode) && WriteTo(path, bytes, 0);
  }
  std::filesystem::path const folder = path.has_parent_path() ? path.parent_path() : ".";
  std::filesystem::path aside = path;
  aside += '.' + std::to_string(getpid()) + ".part";
  bool const isWritten =
      WriteNameless(folder, aside, bytes) || WriteTo(aside, bytes, O_CREAT | O_EXCL);
  if (isWritten && std::rename(aside.c_str(), path.c_str()) == 0) return true;
  unlink(aside.c_str());
  return false;
}

}  // namespace corvanta::app
