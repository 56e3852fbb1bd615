#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "corvanta/export.h"
#include "corvanta/importer/limits.h"
#include "corvanta/platform/shared_memory.h"

namespace corvanta::importer {

/// A model file as a block of the neutral form, made by a program of its own that can open, write
/// and connect to nothing.
class CORVANTA_API NReadModel {
 public:
  /// Fails: throws NImportError for a file that can't be read, one that takes more than the limits
  /// or takes the program down, and where there is no such program or none can be started.
  NReadModel(std::filesystem::path const& path, NImportLimits const& limits);

  /// At a multiple of eight. Nobody else can change it.
  std::span<std::byte const> GetBlock() const;
  /// The files that were opened for it.
  std::vector<std::string> const& GetFiles() const { return m_files; }

 private:
  std::unique_ptr<platform::NSharedMapping const> m_mapping;
  std::vector<std::string> m_files;
};

/// What the program says of the formats that it reads, as reader::ListFormats has it. It may say
/// anything.
/// Fails: throws NImportError where there is no such program or none can be started.
std::string ReadFormats(NImportLimits const& limits);

}  // namespace corvanta::importer
