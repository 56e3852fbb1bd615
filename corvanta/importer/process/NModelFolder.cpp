#include "corvanta/importer/process/NModelFolder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <system_error>

namespace corvanta::importer {

namespace {

namespace fs = std::filesystem;

// Whether `folder` is `top` or lies below it.
bool IsBelow(fs::path const& folder, fs::path const& top) {
  return std::mismatch(top.begin(), top.end(), folder.begin(), folder.end()).first == top.end();
}

}  // namespace

NModelFolder::NModelFolder(fs::path const& model) : m_model(model) {
  std::error_code error;
  fs::path const folder = fs::canonical(fs::absolute(model, error).parent_path(), error);
  if (!error) m_folders.push_back(folder);
  fs::path const file = fs::canonical(model, error);
  if (!error) m_folders.push_back(file.parent_path());
}

bool NModelFolder::IsAllowed(fs::path const& file) const {
  fs::path const folder = file.parent_path();
  return std::any_of(m_folders.begin(), m_folders.end(), [&](fs::path const& own) {
    return IsBelow(folder, own) || IsBelow(own, folder);
  });
}

platform::NDescriptor NModelFolder::Open(std::string const& path) {
  std::error_code error;
  fs::path const file = fs::canonical(path, error);
  if (error || (path != m_model && !IsAllowed(file))) return platform::NDescriptor();
  // To open a device may do something already.
  if (!fs::is_regular_file(file, error)) return platform::NDescriptor();
  platform::NDescriptor opened(
      open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
  struct stat status {};
  bool const isFile = opened && fstat(opened.Get(), &status) == 0 && S_ISREG(status.st_mode);
  if (!isFile) return platform::NDescriptor();
  if (std::find(m_opened.begin(), m_opened.end(), path) == m_opened.end()) {
    m_opened.push_back(path);
  }
  return opened;
}

}  // namespace corvanta::importer
