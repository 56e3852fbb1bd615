#include "corvanta/data/animation/CubicSplineInterpolator.h"

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

}  // namespace corvanta::data::animation
