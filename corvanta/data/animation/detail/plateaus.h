#pragma once

#include <cstddef>
#include <vector>

namespace corvanta::data::animation::detail {

/// Whether `b` is `a` within a thousandth of it; about 0, within 1e-6. Not symmetric.
bool ApproxEqual(double a, double b) noexcept;

/// The keys from `first` to the one before `last`.
struct KeyRange {
  std::size_t first;
  std::size_t last;
};

/// Cuts a sequence of `count` keys where its value rests, so that no curve swings over the rest: a
/// segment ends on a plateau's first key and the next one begins on its last. A plateau is measured
/// against its first key. Every segment has two keys at least, and there is at least one.
/// Requires: two keys or more; `isEqual(i, k)` compares two of them.
template <class IsEqual>
std::vector<KeyRange> SplitAtPlateaus(std::size_t count, IsEqual isEqual) {
  std::vector<KeyRange> segments;
  std::size_t current = 0;
  while (current < count) {
    std::size_t found = current;
    while (found + 1 < count && !isEqual(found, found + 1)) ++found;
    if (found + 1 >= count) {
      if (count - current >= 2) segments.push_back({current, count});
      break;
    }
    std::size_t after = found;
    while (after < count && isEqual(found, after)) ++after;
    if (found != current) {
      segments.push_back({current, found + 1});
      current = after - 1;
    } else if (after == count) {
      if (segments.empty()) segments.push_back({0, 2});
      break;
    } else {
      segments.push_back({after - 1, after + 1});
      current = after;
    }
  }
  return segments;
}

}  // namespace corvanta::data::animation::detail
