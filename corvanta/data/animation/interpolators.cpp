#include "corvanta/data/animation/CubicSplineInterpolator.h"

#include <algorithm>

#include "corvanta/data/animation/SquadInterpolator.h"

namespace corvanta::data::animation {

using DoubleSpline =
    CubicSplineInterpolator<double, double, std::multiplies<double>, std::divides<double>>;

DoubleSpline::CubicSplineInterpolator(std::vector<double> const& values,
                                      boost::shared_ptr<std::vector<double> const> const& times)
    : m_knotMap(*times) {
  m_knots.reserve(values.size());
  for (double const value : values) m_knots.push_back({value, 0.0});
  detail::SolveNaturalSpline(m_knots.data(), m_knots.size());
}

DoubleSpline::~CubicSplineInterpolator() = default;

double DoubleSpline::Evaluate(double time) const {
  KnotPosition const at = m_knotMap.Find(time);
  double const left = static_cast<double>(at.span);
  return detail::EvaluateSpline(&m_knots[at.span], left + 1.0 - at.knot, at.knot - left);
}

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
