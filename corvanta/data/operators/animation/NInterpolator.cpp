#include "corvanta/data/operators/animation/NInterpolator.h"

#include "corvanta/data/operators/animation/NInterpolatorError.h"

namespace corvanta::data::operators::animation {

NInterpolator::NInterpolator(double left, double right) : m_left(left), m_right(right) {
  if (left == right) throw NInterpolatorError();
}

NInterpolator::~NInterpolator() = default;

}  // namespace corvanta::data::operators::animation
