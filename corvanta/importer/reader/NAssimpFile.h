#pragma once

#include <assimp/scene.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "corvanta/importer/reader/NFileOpener.h"

namespace Assimp {
class Importer;
}

namespace corvanta::importer::reader {

/// A model file as Assimp reads it, with polygons cut into triangles, and found to be sound: every
/// index names a vertex, every coordinate and every transform is finite, and there is a root node.
/// Requires: a stack for the depth of its hierarchy, through which Assimp recurses.
class NAssimpFile {
 public:
  /// Fails: throws NImportError.
  NAssimpFile(NFileOpener& opener, std::filesystem::path const& path);
  NAssimpFile(NAssimpFile const&) = delete;
  NAssimpFile& operator=(NAssimpFile const&) = delete;
  ~NAssimpFile();

  aiScene const& GetScene() const { return *m_scene; }
  /// What the reader had to say about the file, in UTF-8.
  std::vector<std::string> const& GetNotes() const { return m_notes; }

 private:
  void Read(NFileOpener& opener, std::filesystem::path const& path);

  std::unique_ptr<Assimp::Importer> m_importer;
  aiScene const* m_scene = nullptr;  // of the importer
  std::vector<std::string> m_notes;
};

}  // namespace corvanta::importer::reader
