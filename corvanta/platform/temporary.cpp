#include "corvanta/platform/temporary.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>

#include "corvanta/platform/convert.h"
#include "corvanta/platform/narrow_path.h"

namespace corvanta::platform {

namespace {

// The folder stands where everybody may write: what is found there is only taken if it is a folder
// of this user, not a link to one, and closed to all others.
bool MakeOwnFolder(std::string const& path) {
  mkdir(path.c_str(), S_IRWXU);
  int const folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (folder < 0) return false;
  struct stat status;
  bool const own = fstat(folder, &status) == 0 && status.st_uid == geteuid() &&
                   ((status.st_mode & ACCESSPERMS) == S_IRWXU || fchmod(folder, S_IRWXU) == 0);
  close(folder);
  return own;
}

struct PrivateFolder {
  pid_t owner = 0;  // a fork doesn't use the folder of the process that it is of
  std::string path;
};
using PrivateFolders = std::map<std::string, PrivateFolder>;

PrivateFolders& GetPrivateFolders() {
  static PrivateFolders& folders = *new PrivateFolders;
  return folders;
}

void RemovePrivateFolders() {
  std::error_code ignored;
  for (auto const& [place, folder] : GetPrivateFolders())
    if (folder.owner == getpid()) std::filesystem::remove_all(folder.path, ignored);
}

// A folder of a new name, for where somebody else made the user's own first. It is kept for the
// process, one for each place.
std::string MakePrivateFolder(std::string const& place) {
  static std::mutex& mutex = *new std::mutex;
  static int const registered = std::atexit(&RemovePrivateFolders);
  static_cast<void>(registered);
  std::scoped_lock const lock(mutex);
  PrivateFolder& folder = GetPrivateFolders()[place];
  if (folder.owner == getpid() && MakeOwnFolder(folder.path)) return folder.path;
  std::string path = place + "-XXXXXX";
  if (!mkdtemp(path.data())) return {};
  folder = {getpid(), path};
  return path;
}

// Empty if it can't be had.
std::string GetNarrowFolder() {
  char const* const set = secure_getenv("TMPDIR");
  // Paths are wide outside: one that isn't UTF-8 would name something else there.
  bool const isUsable = set && *set == '/' && ToNarrow(ToWide(set)) == set;
  std::string folder = isUsable ? set : P_tmpdir;
  folder += "/corvanta-" + std::to_string(geteuid());
  return MakeOwnFolder(folder) ? folder : MakePrivateFolder(folder);
}

// Makes a file of a new name, open for writing, and changes `path` to it. Its last characters
// before the extension are to be XXXXXX.
NFile MakeFile(std::string& path, std::size_t extensionLength) {
  int const descriptor = mkostemps(path.data(), static_cast<int>(extensionLength), O_CLOEXEC);
  if (descriptor < 0) return nullptr;
  NFile file(fdopen(descriptor, "wb"));
  if (!file) {
    close(descriptor);
    unlink(path.c_str());
  }
  return file;
}

}  // namespace

std::wstring GetTemporaryFolder() { return ToWide(GetNarrowFolder()); }

std::wstring WriteTemporaryFile(std::wstring const& name, void const* bytes, std::size_t length) {
  std::string const folder = GetNarrowFolder();
  std::optional<std::string> const narrow = ToNarrowPath(name);
  if (folder.empty() || !narrow) return {};
  std::string const path = folder + '/' + *narrow;
  std::wstring const given = ToWide(path);
  std::string aside = path + ".XXXXXX";
  NFile file = MakeFile(aside, 0);
  if (!file) return {};
  bool written = std::fwrite(bytes, 1, length, file.get()) == length;
  written = std::fclose(file.release()) == 0 && written;
  if (!written || rename(aside.c_str(), path.c_str()) != 0) {
    unlink(aside.c_str());
    return {};
  }
  return given;
}

NTemporaryFile::NTemporaryFile(std::wstring const& extension) {
  std::string const folder = GetNarrowFolder();
  std::string const end = ToNarrow(extension);
  if (folder.empty()) return;
  std::string path = folder + "/XXXXXX" + end;
  m_file = MakeFile(path, end.size());
  if (!m_file) return;
  m_narrowPath = std::move(path);
  try {
    m_path = ToWide(m_narrowPath);
  } catch (...) {
    unlink(m_narrowPath.c_str());
    throw;
  }
}

NTemporaryFile::~NTemporaryFile() {
  if (!m_narrowPath.empty()) unlink(m_narrowPath.c_str());
}

bool NTemporaryFile::Write(void const* bytes, std::size_t length) {
  return m_file && std::fwrite(bytes, 1, length, m_file.get()) == length;
}

bool NTemporaryFile::Close() { return m_file && std::fclose(m_file.release()) == 0; }

}  // namespace corvanta::platform
