#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "corvanta/export.h"

namespace corvanta::data::operators::animation::detail {

/// Ascending times, and where a time stands among them.
///
/// A grid over the range of the times says where to look, so that a search mostly touches one cell
/// of it and one time or two; crowded cells are halved. Any number of threads may search.
/// Cost: constant for times that spread, logarithmic for times that crowd.
class CORVANTA_API NTimeIndex {
 public:
  NTimeIndex() = default;
  explicit NTimeIndex(std::vector<double> times);

  std::vector<double> const& GetTimes() const noexcept { return m_times; }
  std::size_t GetCount() const noexcept { return m_times.size(); }

  /// The position of the first time that is greater than `t`; the count if there is none, also for
  /// NaN.
  /// Requires: there are times.
  std::size_t UpperBound(double t) const noexcept {
    if (!(t < m_times.back())) return m_times.size();
    if (t < m_times.front()) return 0;
    return Search(t, [t](double time) { return time <= t; });
  }
  /// The position of the first time that isn't less than `t`, 0 for NaN; the count if there is
  /// none.
  /// Requires: there are times.
  std::size_t LowerBound(double t) const noexcept {
    if (!(t > m_times.front())) return 0;
    if (t > m_times.back()) return m_times.size();
    return Search(t, [t](double time) { return time < t; });
  }

 private:
  static constexpr std::size_t kCrowd = 8;  // that a cell may hold

  /// The cell of a time that isn't before the first one. Never falls while times rise, whatever
  /// overflows.
  std::size_t GetCell(double t) const noexcept {
    double const cell = (t - m_times.front()) * m_scale;
    return cell < m_lastCell ? static_cast<std::size_t>(cell) : m_starts.size() - 2;
  }

  /// Requires: `isBefore` is false for the last time, and for every time in a later cell.
  template <class IsBefore>
  std::size_t Search(double t, IsBefore isBefore) const noexcept {
    std::size_t position = 0;
    if (!m_starts.empty()) {
      std::size_t const cell = GetCell(t);
      position = m_starts[cell];
      std::size_t const end = m_starts[cell + 1];
      if (end > position + kCrowd) {
        auto const begin = m_times.begin();
        return static_cast<std::size_t>(
            std::partition_point(begin + static_cast<std::ptrdiff_t>(position),
                                 begin + static_cast<std::ptrdiff_t>(end), isBefore) -
            begin);
      }
      // The first step is rarely foreseen, and so not a branch.
      position += isBefore(m_times[position]) ? 1 : 0;
    }
    while (isBefore(m_times[position])) ++position;
    return position;
  }

  std::vector<double> m_times;
  std::vector<std::uint32_t> m_starts;  // for each cell the first time in it or behind, and the
                                        // end; empty for a few times
  double m_scale = 0.0;
  double m_lastCell = 0.0;
};

}  // namespace corvanta::data::operators::animation::detail
