#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "corvanta/importer/reader/NFileOpener.h"
#include "corvanta/importer/reader/gltf_model.h"

namespace corvanta::importer::reader {

/// A glTF 2 file, as text or binary, with its buffers and the pictures that it embeds. What its
/// numbers name may not be there.
class NGltfFile {
 public:
  /// Whether a file of that name is read by this class, if it isn't of the first version.
  static bool IsGltf(std::filesystem::path const& path);

  /// Fails: throws NImportError for a file that can't be parsed, that lacks a buffer, or that
  /// requires an extension which isn't known here.
  NGltfFile(NFileOpener& opener, std::filesystem::path const& path);

  /// A file of version 1, of which nothing else is read.
  bool IsOld() const { return m_isOld; }
  tinygltf::Model const& GetModel() const { return m_model; }
  /// What the file says and can't be heeded, in UTF-8.
  std::vector<std::string> const& GetNotes() const { return m_notes; }

 private:
  void Parse(NFileOpener& opener, std::string const& bytes, std::string const& folder);
  /// The error, if there is one.
  std::string Load(NFileOpener& opener, std::string const& bytes, std::string const& folder);
  void CheckExtensions();

  bool m_isOld = false;
  tinygltf::Model m_model;
  std::vector<std::string> m_notes;
};

}  // namespace corvanta::importer::reader
