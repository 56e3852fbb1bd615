#pragma once

#include <iterator>

/// Edits of lists by position, as the switches have them.
namespace corvanta::core::detail {

/// Inserts `value` before the entry now at `index`.
/// Fails: false, and no change, if `index` is greater than the number of entries.
template <class List, class Value>
bool InsertAt(List& list, Value const& value, unsigned int index) {
  if (index > list.size()) return false;
  list.insert(std::next(list.begin(), index), value);
  return true;
}

/// Fails: false, and no change, if there is no entry at `index`.
template <class List>
bool EraseAt(List& list, unsigned int index) {
  if (index >= list.size()) return false;
  list.erase(std::next(list.begin(), index));
  return true;
}

}  // namespace corvanta::core::detail
