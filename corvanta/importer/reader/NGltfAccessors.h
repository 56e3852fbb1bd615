#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "corvanta/importer/reader/gltf_model.h"

namespace corvanta::importer::reader {

/// The numbers of an accessor, where the file has them.
class NGltfNumbers {
 public:
  std::size_t GetCount() const { return m_count; }
  std::size_t GetWidth() const { return m_width; }
  /// Component `k` of element `i`; normalised integers as the fractions that they stand for.
  float Get(std::size_t i, std::size_t k) const {
    return m_read(m_first + i * m_stride + k * m_size);
  }
  /// Writes the first `N` components of element `i`.
  template <std::size_t N>
  void Copy(std::size_t i, float* to) const {
    char const* const element = m_first + i * m_stride;
    for (std::size_t k = 0; k != N; ++k) to[k] = m_read(element + k * m_size);
  }
  std::vector<float> GetAll() const;

 private:
  friend class NGltfAccessors;

  std::size_t m_count = 0;
  std::size_t m_width = 0;
  std::size_t m_stride = 0;  // bytes
  std::size_t m_size = 0;    // bytes, of a component
  char const* m_first = nullptr;
  float (*m_read)(char const* at) = nullptr;
  std::shared_ptr<std::vector<float> const> m_own;  // those that aren't in one place
};

/// The indices of an accessor, where the file has them.
class NGltfIndices {
 public:
  std::size_t GetCount() const { return m_count; }
  std::uint32_t Get(std::size_t i) const;

 private:
  friend class NGltfAccessors;

  std::size_t m_count = 0;
  std::size_t m_size = 0;  // bytes of one
  std::size_t m_stride = 0;
  char const* m_first = nullptr;
};

/// The accessors of a glTF 2 file, of which nothing is trusted: what they give lies in the file's
/// buffers.
class NGltfAccessors {
 public:
  enum NIntegers { kFractions, kAnyIntegers };

  /// Requires: `model` stays.
  /// Fails: throws NImportError for more elements without a buffer than a file may claim, and for a
  /// sparse accessor that leaves its buffers or itself.
  explicit NGltfAccessors(tinygltf::Model const& model);

  /// Without a buffer view the elements are 0, but for those that a sparse accessor sets.
  /// Fails: throws NImportError if it isn't there, has fewer than `width` components, leaves its
  /// buffer, or if `integers` forbids those that are no fractions.
  NGltfNumbers GetNumbers(int accessor, std::size_t width, NIntegers integers) const;
  NGltfIndices GetIndices(int accessor) const;
  /// The bytes of a buffer view. Fails: throws NImportError if they leave their buffer.
  std::pair<unsigned char const*, std::size_t> GetBytes(int view) const;

 private:
  // Elements in a buffer.
  struct Place {
    char const* first;
    std::size_t stride;  // bytes
  };

  tinygltf::Accessor const& Get(int accessor) const;
  Place FindElements(int view, std::size_t offset, std::size_t count, std::size_t size) const;
  void CheckSparse(tinygltf::Accessor const& accessor) const;
  void SetSparse(tinygltf::Accessor const& accessor, NGltfNumbers const& format,
                 std::vector<float>& numbers) const;
  NGltfIndices GetSparseIndices(tinygltf::Accessor const& accessor) const;

  tinygltf::Model const& m_model;
  std::vector<bool> m_isUnpacked;  // of each buffer view, whether a packed mesh was put there
};

}  // namespace corvanta::importer::reader
