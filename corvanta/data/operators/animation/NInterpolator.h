#pragma once

#include "corvanta/core/reference_countable/NReferenceCountable.h"
#include "corvanta/export.h"

namespace corvanta::data::operators::animation {

/// A function over one span of parameters, for callers that bring spans of their own.
///
/// NKeyFrameAnimation makes none: its spans are in plain arrays. Hold it by
/// `boost::intrusive_ptr`.
class CORVANTA_API NInterpolator : public core::reference_countable::NReferenceCountable {
 public:
  double operator()(double parameter) const { return InterpolateImpl(parameter); }
  double GetLeftParam() const noexcept { return m_left; }
  double GetRightParam() const noexcept { return m_right; }

 protected:
  /// Fails: throws NInterpolatorError if `left` equals `right`.
  NInterpolator(double left, double right);
  ~NInterpolator() override;

 private:
  virtual double InterpolateImpl(double parameter) const = 0;

  double const m_left;
  double const m_right;
};

}  // namespace corvanta::data::operators::animation
