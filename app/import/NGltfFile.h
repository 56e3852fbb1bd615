#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace corvanta::app {

/// A glTF 2 file, as text or binary, with the numbers that its accessors name.
class NGltfFile {
 public:
  /// Fails: throws std::exception for a file that can't be read, or is none.
  explicit NGltfFile(std::filesystem::path const& path);

  nlohmann::json const& GetRoot() const { return m_root; }
  /// The elements of an accessor one behind the other, `width` numbers each; normalised integers as
  /// the fractions that they stand for.
  /// Fails: throws std::exception if it isn't there, isn't of this width, is sparse, or leaves its
  /// buffer.
  std::vector<float> ReadAccessor(std::size_t accessor, std::size_t width);

 private:
  std::string const& GetBuffer(std::size_t buffer);

  std::filesystem::path const m_folder;
  nlohmann::json m_root;
  std::string m_chunk;  // of a binary file: its buffer 0
  std::map<std::size_t, std::string> m_buffers;
};

}  // namespace corvanta::app
