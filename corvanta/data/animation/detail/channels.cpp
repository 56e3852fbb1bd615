#include "corvanta/data/animation/detail/channels.h"

#include <algorithm>

#include "corvanta/data/animation/detail/plateaus.h"

namespace corvanta::data::animation::detail {

namespace {

constexpr float kEqualRotations = 0.0001f;

template <std::size_t N>
std::vector<KeyRange> Split(std::vector<std::array<double, N>> const& keys) {
  return SplitAtPlateaus(keys.size(), [&](std::size_t i, std::size_t k) {
    return std::equal(keys[i].begin(), keys[i].end(), keys[k].begin(), ApproxEqual);
  });
}

std::vector<KeyRange> Split(std::vector<VX_Math::Quaternion> const& keys) {
  return SplitAtPlateaus(keys.size(), [&](std::size_t i, std::size_t k) {
    return keys[i].Equals(keys[k], kEqualRotations);
  });
}

}  // namespace

template <std::size_t N>
SplineChannels<N>::SplineChannels(TrackTimes const& times, std::vector<Values> const& keys)
    : m_segments(times, Split(keys)) {
  for (std::size_t i = 0; i != N; ++i) {
    m_knots[i].reserve(keys.size());
    for (Values const& key : keys) m_knots[i].push_back({key[i], 0.0});
    for (KeyRange const& range : m_segments.GetRanges()) {
      SolveNaturalSpline(&m_knots[i][range.first], range.last - range.first);
    }
  }
}

template class SplineChannels<1>;
template class SplineChannels<3>;
template class SplineChannels<6>;

SquadChannel::SquadChannel(TrackTimes const& times, std::vector<VX_Math::Quaternion> const& keys)
    : m_segments(times, Split(keys)) {
  // Outside the segments, where nothing is evaluated, each span stands alone.
  std::vector<KeyRange> around;
  for (std::size_t i = 0; i + 1 != keys.size(); ++i) around.push_back({i, i + 2});
  for (KeyRange const& range : m_segments.GetRanges()) {
    for (std::size_t i = range.first; i + 1 != range.last; ++i) around[i] = range;
  }
  m_spans.reserve(around.size());
  for (std::size_t i = 0; i != around.size(); ++i) {
    std::size_t const before = i == around[i].first ? i : i - 1;
    std::size_t const after = std::min(i + 2, around[i].last - 1);
    m_spans.emplace_back(keys[before], keys[i], keys[i + 1], keys[after]);
  }
}

}  // namespace corvanta::data::animation::detail
