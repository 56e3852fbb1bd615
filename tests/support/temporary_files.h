#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "corvanta/core/text/convert.h"
#include "corvanta/core/uri/NPath.h"

namespace corvanta::support {

/// A folder of its own for one test, gone with its content at the end. While it stands, the
/// library's temporary folder is made below it.
class TemporaryFiles {
 public:
  TemporaryFiles() {
    char const* const before = std::getenv("TMPDIR");
    m_before = before ? before : "";
    std::string name = std::filesystem::temp_directory_path() / "corvanta_test_XXXXXX";
    m_folder = mkdtemp(name.data());
    std::filesystem::create_directory(m_folder / "tmp");
    setenv("TMPDIR", (m_folder / "tmp").c_str(), 1);
  }
  ~TemporaryFiles() {
    m_before.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", m_before.c_str(), 1);
    std::filesystem::remove_all(m_folder);
  }
  TemporaryFiles(TemporaryFiles const&) = delete;
  TemporaryFiles& operator=(TemporaryFiles const&) = delete;

  std::filesystem::path const& GetFolder() const { return m_folder; }

  /// The path of `name` in the folder; the name is UTF-8.
  core::uri::NPath At(std::string const& name) const {
    return core::text::ToWide((m_folder / name).string());
  }

  core::uri::NPath Write(std::string const& name, std::string const& bytes) const {
    std::ofstream(m_folder / name, std::ios::binary) << bytes;
    return At(name);
  }

  /// The files that the library has in its temporary folder now.
  std::vector<std::filesystem::path> GetLeftovers() const {
    std::vector<std::filesystem::path> files;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(m_folder / "tmp")) {
      if (!entry.is_directory()) files.push_back(entry.path());
    }
    return files;
  }

 private:
  std::string m_before;
  std::filesystem::path m_folder;
};

inline std::string ReadBytes(core::uri::NPath const& path) {
  std::ifstream file(core::text::ToNarrow(path.ToString()), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace corvanta::support
