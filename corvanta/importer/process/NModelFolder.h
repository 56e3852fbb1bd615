#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "corvanta/export.h"
#include "corvanta/platform/descriptor.h"

namespace corvanta::importer {

/// What a model file may name: regular files that lie in its folder, in one below it, or in one of
/// its parents, and no symbolic link may lead elsewhere.
class CORVANTA_API NModelFolder {
 public:
  /// `model` may itself be a link; what lies beside the file that it leads to may be named too.
  explicit NModelFolder(std::filesystem::path const& model);

  /// Opens the model or what it names, for reading. Waits for nobody.
  /// Fails: no descriptor.
  platform::NDescriptor Open(std::string const& path);
  /// Those that were opened, in order, each once.
  std::vector<std::string> const& GetOpened() const { return m_opened; }

 private:
  bool IsAllowed(std::filesystem::path const& file) const;

  std::filesystem::path const m_model;
  std::vector<std::filesystem::path> m_folders;  // without links
  std::vector<std::string> m_opened;
};

}  // namespace corvanta::importer
