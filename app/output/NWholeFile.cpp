#include "app/output/NWholeFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <stdexcept>
#include <string>
#include <system_error>

namespace corvanta::app {

namespace {

[[noreturn]] void Refuse() { throw std::runtime_error("can't be written"); }

std::string GetDescriptorPath(int descriptor) {
  return "/proc/self/fd/" + std::to_string(descriptor);
}

}  // namespace

NWholeFile::NWholeFile(std::filesystem::path const& path) : m_place(path) {
  std::error_code error;
  auto const status = std::filesystem::status(m_place, error);
  if (std::filesystem::is_directory(status)) Refuse();
  if (std::filesystem::exists(status)) {
    // A link stays one; what it leads to is replaced.
    auto const real = std::filesystem::canonical(m_place, error);
    if (!error) m_place = real;
  }
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    m_stream.open(m_place, std::ios::binary);
  } else {
    m_aside = m_place;
    m_aside += '.' + std::to_string(getpid()) + ".part";
    OpenNameless();
    if (m_nameless < 0) m_stream.open(m_aside, std::ios::binary | std::ios::trunc);
  }
  if (!m_stream) Refuse();
}

NWholeFile::~NWholeFile() {
  m_stream.close();
  if (m_nameless >= 0) close(m_nameless);
  if (!m_aside.empty()) unlink(m_aside.c_str());
}

void NWholeFile::OpenNameless() {
  std::filesystem::path const folder = m_place.has_parent_path() ? m_place.parent_path() : ".";
  m_nameless = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666);
  if (m_nameless < 0) return;
  m_stream.open(GetDescriptorPath(m_nameless), std::ios::binary);
  if (m_stream) return;
  m_stream.clear();
  close(m_nameless);
  m_nameless = -1;
}

void NWholeFile::Commit() {
  m_stream.close();
  if (!m_stream) Refuse();
  if (m_aside.empty()) return;
  // A name is given to what has none, and then that of the place.
  if (m_nameless >= 0 && linkat(AT_FDCWD, GetDescriptorPath(m_nameless).c_str(), AT_FDCWD,
                                m_aside.c_str(), AT_SYMLINK_FOLLOW) != 0) {
    Refuse();
  }
  std::error_code error;
  std::filesystem::rename(m_aside, m_place, error);
  if (error) Refuse();
}

}  // namespace corvanta::app
