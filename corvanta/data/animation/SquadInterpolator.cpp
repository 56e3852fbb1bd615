#include "corvanta/data/animation/SquadInterpolator.h"

#include <algorithm>

namespace corvanta::data::animation {

SquadInterpolator::SquadInterpolator(std::vector<VX_Math::Quaternion> const& quaternions,
                                     boost::shared_ptr<std::vector<double> const> const& times)
    : m_knotMap(*times) {
  std::size_t const last = quaternions.size() - 1;
  m_spans.reserve(last);
  for (std::size_t i = 0; i != last; ++i) {
    m_spans.emplace_back(quaternions[i == 0 ? 0 : i - 1], quaternions[i], quaternions[i + 1],
                         quaternions[std::min(i + 2, last)]);
  }
}

SquadInterpolator::~SquadInterpolator() = default;

VX_Math::Quaternion SquadInterpolator::Evaluate(double time) const {
  KnotPosition const at = m_knotMap.Find(time);
  return m_spans[at.span].Evaluate(static_cast<float>(at.knot - static_cast<double>(at.span)));
}

}  // namespace corvanta::data::animation
