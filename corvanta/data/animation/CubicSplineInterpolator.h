#pragma once

#include <boost/shared_ptr.hpp>
#include <functional>
#include <vector>

#include "corvanta/data/animation/Interpolator.h"
#include "corvanta/data/animation/KnotMap.h"
#include "corvanta/data/animation/detail/spline.h"
#include "corvanta/export.h"

namespace corvanta::data::animation {

/// A natural cubic spline; exists for doubles alone.
template <class T, class P, class Multiplies = std::multiplies<T>, class Divides = std::divides<T>>
class CubicSplineInterpolator;

/// The natural cubic spline through keys, over the index of the keys: its curvature vanishes at
/// both ends. Two keys make the straight line. Constant outside its keys. Any number of threads may
/// evaluate it.
template <>
class CORVANTA_API
    CubicSplineInterpolator<double, double, std::multiplies<double>, std::divides<double>>
    : public Interpolator<double, double> {
 public:
  /// Requires: as many values as times, two or more; ascending times. Nothing is checked.
  CubicSplineInterpolator(std::vector<double> const& values,
                          boost::shared_ptr<std::vector<double> const> const& times);
  ~CubicSplineInterpolator() override;

  /// Exactly a key's value at its time.
  /// Cost: one search, no allocation.
  double Evaluate(double time) const override;

 private:
  KnotMap m_knotMap;
  std::vector<detail::SplineKnot> m_knots;
};

}  // namespace corvanta::data::animation
