#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace corvanta::importer {

/// A zip archive in the user's own temporary folder, gone when the object goes.
class NTemporaryArchive {
 public:
  struct Entry {
    std::string name;
    std::span<unsigned char const> bytes;
  };

  /// Stores the entries as they are, since pictures are packed already.
  /// Fails: throws std::runtime_error if the archive can't be written.
  explicit NTemporaryArchive(std::vector<Entry> const& entries);
  NTemporaryArchive(NTemporaryArchive const&) = delete;
  NTemporaryArchive& operator=(NTemporaryArchive const&) = delete;
  ~NTemporaryArchive();

  std::filesystem::path const& GetPath() const { return m_path; }

 private:
  std::filesystem::path m_path;
};

}  // namespace corvanta::importer
