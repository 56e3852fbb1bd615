#pragma once

#include <cstring>
#include <functional>
#include <span>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "corvanta/importer/neutral/scene.h"

namespace corvanta::importer::neutral {

/// A scene under construction. What is large stays where the reader has it and is copied once, by
/// Write.
class NSceneWriter {
 public:
  /// All elements of a kind that were added; nodes, meshes and their like are added here.
  template <class T>
  std::vector<T>& Get() {
    return std::get<std::vector<T>>(m_stored);
  }

  template <class T>
  NRange<T> Add(std::span<T const> elements) {
    auto& stored = Get<T>();
    NRange<T> const range{stored.size(), elements.size()};
    stored.insert(stored.end(), elements.begin(), elements.end());
    return range;
  }
  template <class T>
  NRange<T> Add(std::vector<T> const& elements) {
    return Add(std::span<T const>(elements));
  }
  NText AddText(std::string_view text) { return Add(std::span<char const>(text)); }

  /// Room for `count` elements, which `fill` writes when the block is written. A kind is added
  /// either so or by Add.
  template <class T>
  NRange<T> Reserve(std::size_t count, std::function<void(T*)> fill) {
    auto& late = std::get<Late<T>>(m_late);
    NRange<T> const range{late.count, count};
    late.count += count;
    late.fills.emplace_back(count, std::move(fill));
    return range;
  }

  /// Y, unless it is set.
  void SetUp(NUpAxis up) { m_up = up; }
  /// 1, unless it is set. Units: metres. Requires: from 1e-9 to 1e9.
  void SetUnit(double unit) { m_unit = unit; }

  /// Units: bytes.
  std::size_t GetSize() const { return Lay().second; }
  /// Writes the block; `to` has GetSize bytes, at a multiple of eight.
  void Write(std::byte* to) const;

 private:
  template <class T>
  struct Late {
    std::size_t count = 0;
    std::vector<std::pair<std::size_t, std::function<void(T*)>>> fills;
  };
  template <class Tuple>
  struct Arrays;
  template <class... Kinds>
  struct Arrays<std::tuple<Kinds...>> {
    using Stored = std::tuple<std::vector<Kinds>...>;
    using Lates = std::tuple<Late<Kinds>...>;
  };

  // Where each array stands, and the size of the whole.
  std::pair<NHeader, std::size_t> Lay() const;

  NUpAxis m_up = NUA_Y;
  double m_unit = 1.0;
  Arrays<NElements>::Stored m_stored;
  Arrays<NElements>::Lates m_late;
};

}  // namespace corvanta::importer::neutral
