#include "corvanta/data/animation/detail/TrackTimes.h"

#include <limits>

namespace corvanta::data::animation::detail {

TrackTimes::Position TrackTimes::Find(double time) const noexcept {
  std::vector<double> const& times = m_index.GetTimes();
  std::size_t const reached = m_index.UpperBound(time);
  if (reached == 0 || reached == times.size()) return {time, reached, 0.0};
  double const left = times[reached - 1];
  return {time, reached, (time - left) / (times[reached] - left)};
}

Segments::Segments(TrackTimes const& times, std::vector<KeyRange> ranges)
    : m_ranges(std::move(ranges)) {
  if (m_ranges.size() == 1) return;
  for (KeyRange const& range : m_ranges) {
    // A segment that begins with two keys at one time holds the later one's value from that time
    // on; any other still leaves its first moment to the segment before it.
    double const start = times[range.first];
    bool const isDouble = start == times[range.first + 1];
    m_starts.push_back(isDouble ? -std::numeric_limits<double>::infinity() : start);
  }
  m_atKey.reserve(times.GetCount());
  std::uint32_t segment = 0;
  for (std::size_t key = 0; key != times.GetCount(); ++key) {
    while (segment + 1 != m_ranges.size() && m_ranges[segment + 1].first <= key) ++segment;
    m_atKey.push_back(segment);
  }
}

Segments::Place Segments::Find(TrackTimes::Position const& at) const noexcept {
  std::size_t segment = 0;
  // No key is below a time that isn't a number: it stands at the end of the first segment.
  if (at.time != at.time) return {m_ranges.front().last - 2, 0.0, 1.0};
  if (!m_atKey.empty() && at.reached != 0) {
    segment = m_atKey[at.reached - 1];
    if (segment != 0 && m_starts[segment] == at.time) --segment;
  }
  KeyRange const& range = m_ranges[segment];
  if (at.reached <= range.first) return {range.first, 1.0, 0.0};
  if (at.reached >= range.last) return {range.last - 2, 0.0, 1.0};
  // Knots count from the segment's first key, which shows in the rounding.
  std::size_t const left = at.reached - 1;
  double const leftKnot = static_cast<double>(left - range.first);
  double const knot = at.way + leftKnot;
  if (knot < leftKnot + 1.0) return {left, leftKnot + 1.0 - knot, knot - leftKnot};
  if (left + 2 < range.last) return {left + 1, 1.0, 0.0};
  return {left, 0.0, 1.0};
}

}  // namespace corvanta::data::animation::detail
