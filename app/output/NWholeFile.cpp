#include "app/output/NWholeFile.h"

#include <stdexcept>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "app/output/png_file.h"
#include "app/output/text.h"

namespace corvanta::app {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void Refuse(std::string const& reason = "") {
  throw std::runtime_error("can't be written" + (reason.empty() ? "" : ": " + reason));
}

std::string GetDescriptorPath(int descriptor) {
  return "/proc/self/fd/" + std::to_string(descriptor);
}

fs::path GetFolder(fs::path const& place) {
  return place.has_parent_path() ? place.parent_path() : ".";
}

// Where links lead, also if there is nothing yet.
fs::path FollowLinks(fs::path place) {
  constexpr int kMostLinks = 40;
  std::error_code error;
  for (int i = 0; i != kMostLinks && fs::is_symlink(fs::symlink_status(place, error)); ++i) {
    fs::path const target = fs::read_symlink(place, error);
    if (error) break;
    place = GetFolder(place) / target;  // an absolute one stands alone
  }
  return place;
}

}  // namespace

NWholeFile::NWholeFile(fs::path const& path) : m_place(FollowLinks(path)) {
  struct stat before = {};
  bool const isThere = stat(m_place.c_str(), &before) == 0;
  if (isThere && S_ISDIR(before.st_mode)) Refuse("it is a folder");
  if (isThere && !S_ISREG(before.st_mode)) {
    m_stream.open(m_place, std::ios::binary);
    if (!m_stream) Refuse();
    return;
  }
  constexpr mode_t kWritable = S_IWUSR | S_IWGRP | S_IWOTH;
  bool const isWritable = (before.st_mode & kWritable) != 0 &&
                          faccessat(AT_FDCWD, m_place.c_str(), W_OK, AT_EACCESS) == 0;
  if (isThere && !isWritable) Refuse("it is read-only");
  std::error_code error;
  if (fs::path const folder = GetFolder(m_place); !fs::is_directory(folder, error)) {
    Refuse("there is no folder " + Quoted(folder.string()));
  }
  OpenAside();
  if (!m_stream) {
    Close();
    Refuse();
  }
  if (!isThere) return;
  // The owner first: a change of it may take bits of the mode.
  if (fchown(m_descriptor, before.st_uid, before.st_gid) != 0) {
    Close();
    Refuse("its owner can't be kept");
  }
  if (fchmod(m_descriptor, before.st_mode & 07777) != 0) {
    Close();
    Refuse("its mode can't be kept");
  }
}

NWholeFile::~NWholeFile() { Close(); }

void NWholeFile::OpenAside() {
  m_aside = m_place;
  m_aside += '.' + std::to_string(getpid()) + ".part";
  m_descriptor = open(GetFolder(m_place).c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666);
  if (m_descriptor >= 0) {
    m_stream.open(GetDescriptorPath(m_descriptor), std::ios::binary);
    if (m_stream) return;
    m_stream.clear();
    close(m_descriptor);
  }
  m_descriptor = open(m_aside.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, 0666);
  m_isNamed = m_descriptor >= 0;
  m_stream.open(m_aside, std::ios::binary);
}

void NWholeFile::Close() {
  m_stream.close();
  if (m_descriptor >= 0) close(m_descriptor);
  m_descriptor = -1;
  if (m_isNamed) unlink(m_aside.c_str());
  m_isNamed = false;
}

void NWholeFile::Commit() {
  m_stream.close();
  if (!m_stream) Refuse();
  if (m_aside.empty()) return;
  // A name is given to what has none, and then that of the place.
  if (!m_isNamed && linkat(AT_FDCWD, GetDescriptorPath(m_descriptor).c_str(), AT_FDCWD,
                           m_aside.c_str(), AT_SYMLINK_FOLLOW) != 0) {
    Refuse();
  }
  m_isNamed = true;
  std::error_code error;
  fs::rename(m_aside, m_place, error);
  if (error) Refuse();
  m_isNamed = false;
}

void WritePng(std::filesystem::path const& path, renderer::NPixels const& pixels) {
  // It is opened first: a picture takes longer.
  NWholeFile file(path);
  file.GetStream() << renderer::EncodePng(pixels);
  file.Commit();
}

}  // namespace corvanta::app
