#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "corvanta/export.h"
#include "corvanta/importer/neutral/scene.h"

namespace corvanta::importer::neutral {

/// A scene in a block of bytes that nobody needs to trust: once made, every range lies in its
/// array, every number names something, the nodes are one tree, and positions and transforms are
/// finite. All ranges of a kind together are no longer than its array, and the items are no more
/// than kMostItems: work and memory stay in proportion to the block.
class CORVANTA_API NSceneView {
 public:
  /// Fails: throws NImportError for anything else.
  /// Requires: `block` stands at a multiple of eight, and stays as it is while this is used.
  /// Cost: linear in the block.
  explicit NSceneView(std::span<std::byte const> block);

  /// All elements of a kind.
  template <class T>
  std::span<T const> Get() const {
    auto const& array = m_header->arrays[kKind<T>];
    return {reinterpret_cast<T const*>(m_block.data() + array.offset), array.count};
  }
  NUpAxis GetUp() const { return static_cast<NUpAxis>(m_header->up); }
  /// Units: metres.
  double GetUnit() const { return m_header->unit; }
  template <class T>
  std::span<T const> Get(NRange<T> const& range) const {
    return Get<T>().subspan(range.first, range.count);
  }
  std::string_view GetText(NText const& text) const {
    auto const chars = Get(text);
    return {chars.data(), chars.size()};
  }
  std::string GetString(NText const& text) const { return std::string(GetText(text)); }

 private:
  std::span<std::byte const> m_block;
  NHeader const* m_header;
};

}  // namespace corvanta::importer::neutral
