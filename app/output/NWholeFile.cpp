#include "app/output/NWholeFile.h"

#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

// What is at `place`; nullopt for nothing.
// Fails: throws std::runtime_error where no file can be written.
std::optional<struct stat> Judge(fs::path const& place) {
  struct stat before = {};
  bool const isThere = stat(place.c_str(), &before) == 0;
  if (isThere && S_ISDIR(before.st_mode)) Refuse("it is a folder");
  if (isThere && !S_ISREG(before.st_mode)) return before;
  constexpr mode_t kWritable = S_IWUSR | S_IWGRP | S_IWOTH;
  bool const isWritable = (before.st_mode & kWritable) != 0 &&
                          faccessat(AT_FDCWD, place.c_str(), W_OK, AT_EACCESS) == 0;
  if (isThere && !isWritable) Refuse("it is read-only");
  std::error_code error;
  if (fs::path const folder = GetFolder(place); !fs::is_directory(folder, error)) {
    Refuse("there is no folder " + Quoted(folder.string()));
  }
  return isThere ? std::optional(before) : std::nullopt;
}

}  // namespace

void NWholeFile::Check(fs::path const& path) {
  if (!IsStdout(path)) Judge(FollowLinks(path));
}

bool NWholeFile::IsStdout(fs::path const& path) { return path == "-"; }

NWholeFile::NWholeFile(fs::path const& path) : m_place(FollowLinks(path)) {
  m_isStdout = IsStdout(path);
  if (m_isStdout) return;
  auto const before = Judge(m_place);
  if (before && !S_ISREG(before->st_mode)) {
    m_stream.open(m_place, std::ios::binary);
    if (!m_stream) Refuse();
    return;
  }
  OpenAside();
  if (!m_stream) {
    Close();
    Refuse();
  }
  if (!before) return;
  // The owner first: a change of it may take bits of the mode.
  if (fchown(m_descriptor, before->st_uid, before->st_gid) != 0) {
    Close();
    Refuse("its owner can't be kept");
  }
  if (fchmod(m_descriptor, before->st_mode & 07777) != 0) {
    Close();
    Refuse("its mode can't be kept");
  }
}

NWholeFile::~NWholeFile() { Close(); }

std::ostream& NWholeFile::GetStream() {
  if (m_isStdout) return std::cout;
  return m_stream;
}

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
  // The program looks at its end whether all could be written there.
  if (m_isStdout) return;
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

bool CanWrite(std::string const& path) {
  if (path.empty()) return true;
  try {
    NWholeFile::Check(path);
    return true;
  } catch (std::exception const& error) {
    PrintError(path, error.what());
  }
  return false;
}

}  // namespace corvanta::app
