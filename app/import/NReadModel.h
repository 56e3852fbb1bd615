#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <vector>

namespace corvanta::app {

/// A model file as a block of the neutral form.
class NReadModel {
 public:
  /// Fails: throws NImportError.
  explicit NReadModel(std::filesystem::path const& path);

  std::span<std::byte const> GetBlock() const { return m_block; }

 private:
  std::vector<std::byte> m_block;
};

}  // namespace corvanta::app
