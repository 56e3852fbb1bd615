#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "corvanta/importer/reader/NFileOpener.h"

namespace corvanta::importer::reader {

/// A glTF 2 file, as text or binary, with the numbers that its accessors name.
class NGltfFile {
 public:
  /// Fails: throws std::exception for a file that can't be read, or is none.
  NGltfFile(NFileOpener& opener, std::filesystem::path const& path);

  nlohmann::json const& GetRoot() const { return m_root; }
  /// The elements of an accessor one behind the other, `width` numbers each; normalised integers as
  /// the fractions that they stand for. Without a buffer view they are 0, but for those that a
  /// sparse accessor sets.
  /// Fails: throws std::exception if it isn't there, isn't of this width, or leaves its buffer.
  std::vector<float> ReadAccessor(std::size_t accessor, std::size_t width);

  /// The file as Assimp can read it, if it can't read it as it is: its reader refuses a file that
  /// has an accessor of zeros, with neither a buffer view nor sparse values.
  /// Fails: throws NImportError for more elements without a buffer than a file may claim, and for a
  /// sparse accessor that leaves its buffers or itself, which that reader would follow.
  std::optional<std::string> GetMended();

 private:
  // Elements in a buffer.
  struct Place {
    char const* first;
    std::size_t stride;  // bytes
  };

  Place FindElements(nlohmann::json const& source, std::size_t count, std::size_t size);
  std::vector<float> ReadElements(nlohmann::json const& accessor, nlohmann::json const& source,
                                  std::size_t count, std::size_t width);
  std::vector<std::uint32_t> ReadIndices(nlohmann::json const& source, std::size_t count);
  void CheckSparse(nlohmann::json const& accessor);
  void SetSparse(nlohmann::json const& accessor, std::size_t width, std::vector<float>& numbers);
  std::string const& GetBuffer(std::size_t buffer);

  NFileOpener& m_opener;
  std::filesystem::path const m_folder;
  bool m_isBinary = false;
  nlohmann::json m_root;
  std::string m_chunk;  // of a binary file: its buffer 0
  std::map<std::size_t, std::string> m_buffers;
};

}  // namespace corvanta::importer::reader
