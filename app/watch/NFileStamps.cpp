#include "app/watch/NFileStamps.h"

#include <sys/stat.h>

#include <utility>

namespace corvanta::app {

namespace {

constexpr std::chrono::milliseconds kRest(200);
// A file that is replaced by another way than renaming is gone for a moment.
constexpr std::chrono::milliseconds kRestWithoutFile(1000);

}  // namespace

NFileStamps::Stamp NFileStamps::Read(std::string const& file) {
  struct stat status = {};
  if (stat(file.c_str(), &status) != 0) return {};
  return {status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_size, status.st_ino};
}

void NFileStamps::SetFiles(std::vector<std::string> const& files) {
  std::map<std::string, Stamp> known;
  for (std::string const& file : files) {
    auto const found = m_known.find(file);
    known.emplace(file, found == m_known.end() ? Read(file) : found->second);
  }
  m_known = std::move(known);
  m_seen = m_known;
}

bool NFileStamps::Look(Clock::time_point now) {
  bool isChanging = false;
  bool isGone = false;
  for (auto& [file, seen] : m_seen) {
    Stamp const stamp = Read(file);
    isChanging = isChanging || stamp != seen;
    isGone = isGone || stamp.size < 0;
    seen = stamp;
  }
  if (isChanging) m_since = now;
  auto const rest = isGone ? kRestWithoutFile : kRest;
  if (m_seen == m_known || now - m_since < rest) return false;
  m_changed.clear();
  for (auto const& [file, seen] : m_seen) {
    if (seen != m_known[file]) m_changed.insert(file);
  }
  m_known = m_seen;
  return true;
}

}  // namespace corvanta::app
