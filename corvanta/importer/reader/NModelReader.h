#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>

#include "corvanta/importer/neutral/NSceneWriter.h"
#include "corvanta/importer/reader/NFileOpener.h"

namespace corvanta::importer::reader {

/// Reads a model file, of which it trusts nothing, into the neutral form.
class NModelReader {
 public:
  /// Fails: throws NImportError for a file that can't be used.
  NModelReader(NFileOpener& opener, std::filesystem::path const& path);
  NModelReader(NModelReader const&) = delete;
  NModelReader& operator=(NModelReader const&) = delete;
  ~NModelReader();

  /// Units: bytes.
  std::size_t GetSize() const { return m_writer.GetSize(); }
  /// Writes the scene, as NSceneWriter::Write does.
  void Write(std::byte* to) const { m_writer.Write(to); }

 private:
  struct Sources;

  std::unique_ptr<Sources> const m_sources;  // what the writer copies from
  neutral::NSceneWriter m_writer;
};

}  // namespace corvanta::importer::reader
