#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "corvanta/data/animation/detail/Step.h"
#include "corvanta/data/animation/detail/plateaus.h"
#include "corvanta/data/operators/animation/detail/NTimeIndex.h"

namespace corvanta::data::animation::detail {

/// The key times of a track, which all its channels share, and so the search.
class TrackTimes {
 public:
  /// A time, how many keys it has reached, and how much of the way from the last of them to the
  /// next.
  struct Position {
    double time;
    std::size_t reached;
    double way;
  };

  explicit TrackTimes(std::vector<double> times) : m_index(std::move(times)) {}

  std::size_t GetCount() const noexcept { return m_index.GetCount(); }
  double operator[](std::size_t key) const noexcept { return m_index.GetTimes()[key]; }
  bool MustUpdate(Step const& step) const noexcept {
    return detail::MustUpdate(m_index.GetTimes().front(), m_index.GetTimes().back(), step);
  }
  Position Find(double time) const noexcept;

 private:
  operators::animation::detail::NTimeIndex m_index;
};

/// The segments that a channel of a track is cut into. Between two of them the value rests at the
/// end of the first.
class Segments {
 public:
  /// A place between the key `left` and the next, which weigh `a` and `b`.
  struct Place {
    std::size_t left;
    double a;
    double b;
  };

  Segments(TrackTimes const& times, std::vector<KeyRange> ranges);

  std::vector<KeyRange> const& GetRanges() const noexcept { return m_ranges; }
  Place Find(TrackTimes::Position const& at) const noexcept;

 private:
  std::vector<KeyRange> m_ranges;
  std::vector<double> m_starts;
  // The last segment that begins at or before each key; empty for one segment.
  std::vector<std::uint32_t> m_atKey;
};

}  // namespace corvanta::data::animation::detail
