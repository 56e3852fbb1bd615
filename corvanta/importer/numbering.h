#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "corvanta/importer/neutral/scene.h"

namespace corvanta::importer {

/// Mixes a value into a hash. Zeros of both signs are one.
inline std::size_t Mix(std::size_t hash, float value) {
  // Adding 0 makes one of the two zeros.
  return (hash ^ std::bit_cast<std::uint32_t>(value + 0.0f)) * 0x9E3779B97F4A7C15u;
}
inline std::size_t Mix(std::size_t hash, neutral::NTriple const& v) {
  hash = Mix(Mix(Mix(hash, v[0]), v[1]), v[2]);
  return hash ^ (hash >> 32);
}

/// Numbers distinct things from 0 in the order in which they are met.
class NNumbering {
 public:
  /// Requires: no more than `most` things are distinct.
  explicit NNumbering(std::size_t most) : m_slots(std::bit_ceil(2 * most + 1), kFree) {}

  /// The number of what has that hash and `isSame` by its number, and whether it is a new one.
  template <class IsSame>
  std::pair<std::uint32_t, bool> Take(std::size_t hash, IsSame const& isSame) {
    std::size_t const mask = m_slots.size() - 1;
    for (std::size_t at = (hash ^ hash >> 29) & mask;; at = (at + 1) & mask) {
      if (m_slots[at] == kFree) {
        m_slots[at] = m_count;
        return {m_count++, true};
      }
      if (isSame(m_slots[at])) return {m_slots[at], false};
    }
  }
  std::uint32_t GetCount() const { return m_count; }

 private:
  static constexpr std::uint32_t kFree = 0xFFFFFFFF;

  std::vector<std::uint32_t> m_slots;
  std::uint32_t m_count = 0;
};

}  // namespace corvanta::importer
