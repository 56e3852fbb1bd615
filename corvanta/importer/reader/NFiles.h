#pragma once

#include <assimp/IOStream.hpp>
#include <assimp/IOSystem.hpp>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "corvanta/importer/reader/NFileOpener.h"

namespace corvanta::importer::reader {

struct NCloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using NFile = std::unique_ptr<std::FILE, NCloseFile>;

/// Fails: null for a file that can't be opened.
NFile OpenFile(NFileOpener& opener, std::string const& path);
/// All bytes of a file.
/// Fails: throws NImportError.
std::string ReadFile(NFileOpener& opener, std::string const& path);

/// What Assimp knows of the file system: files that an opener gives, to be read. A file that isn't
/// there may be one that the model names in the manner of URIs.
class NFiles : public Assimp::IOSystem {
 public:
  NFiles(NFileOpener& opener, std::filesystem::path const& model)
      : m_opener(opener), m_folder(model.parent_path().string()) {}

  bool Exists(char const* path) const override { return Find(path) != nullptr; }
  char getOsSeparator() const override { return '/'; }
  Assimp::IOStream* Open(char const* path, char const* mode) override;
  void Close(Assimp::IOStream* stream) override { delete stream; }

 private:
  NFile Find(std::string const& path) const;

  NFileOpener& m_opener;
  std::string const m_folder;
};

}  // namespace corvanta::importer::reader
