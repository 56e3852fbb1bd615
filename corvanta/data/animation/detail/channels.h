#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "corvanta/data/animation/detail/TrackTimes.h"
#include "corvanta/data/animation/detail/spline.h"
#include "corvanta/data/animation/detail/squad.h"
#include "corvanta/vx_math/Quaternion.h"

namespace corvanta::data::animation::detail {

/// `N` channels of a track that are cut together, each a natural spline in every segment. A key
/// that ends one segment and begins the next has curvature 0 in both, so that one array does.
template <std::size_t N>
class SplineChannels {
 public:
  using Values = std::array<double, N>;

  SplineChannels(TrackTimes const& times, std::vector<Values> const& keys);

  Values Evaluate(TrackTimes::Position const& at) const noexcept {
    Segments::Place const place = m_segments.Find(at);
    Values values;
    for (std::size_t i = 0; i != N; ++i) {
      values[i] = EvaluateSpline(&m_knots[i][place.left], place.a, place.b);
    }
    return values;
  }

 private:
  Segments m_segments;
  std::array<std::vector<SplineKnot>, N> m_knots;
};

/// The rotation of a track: a squad in every segment.
class SquadChannel {
 public:
  SquadChannel(TrackTimes const& times, std::vector<VX_Math::Quaternion> const& keys);

  VX_Math::Quaternion Evaluate(TrackTimes::Position const& at) const noexcept {
    Segments::Place const place = m_segments.Find(at);
    return m_spans[place.left].Evaluate(static_cast<float>(place.b));
  }

 private:
  Segments m_segments;
  std::vector<SquadSpan> m_spans;  // one behind each key but the last
};

extern template class SplineChannels<1>;
extern template class SplineChannels<3>;
extern template class SplineChannels<6>;

}  // namespace corvanta::data::animation::detail
