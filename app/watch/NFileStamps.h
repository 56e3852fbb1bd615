#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace corvanta::app {

/// Tells when files were written, by looking at them now and then. A file may be replaced, or be
/// gone for a while.
class NFileStamps {
 public:
  using Clock = std::chrono::steady_clock;

  explicit NFileStamps(std::vector<std::string> const& files) { SetFiles(files); }

  /// Looks at the files.
  /// Returns: whether one of them is another than at the last true, and all have been at rest for a
  /// while: who writes a file does it bit by bit.
  bool Look(Clock::time_point now);

  /// The files that were others at the last true.
  std::set<std::string> const& GetChanged() const { return m_changed; }
  /// Looks at these files from now on. Those that it looks at already stay as they are known.
  void SetFiles(std::vector<std::string> const& files);
  std::size_t GetCount() const { return m_known.size(); }

 private:
  struct Stamp {
    long long seconds = 0, nanoseconds = 0, size = -1;  // -1: there is none
    unsigned long long number = 0;

    bool operator==(Stamp const&) const = default;
  };

  static Stamp Read(std::string const& file);

  std::map<std::string, Stamp> m_known;  // at the last true
  std::map<std::string, Stamp> m_seen;   // at the last look
  std::set<std::string> m_changed;
  Clock::time_point m_since = Clock::now();
};

}  // namespace corvanta::app
