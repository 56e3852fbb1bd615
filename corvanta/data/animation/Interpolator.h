#pragma once

namespace corvanta::data::animation {

/// A function of a parameter, immutable once made.
template <class T, class P>
class Interpolator {
 public:
  virtual T Evaluate(P parameter) const = 0;
  virtual ~Interpolator() = default;

 protected:
  Interpolator() = default;
  Interpolator(Interpolator const&) = default;
  Interpolator& operator=(Interpolator const&) = default;
};

}  // namespace corvanta::data::animation
