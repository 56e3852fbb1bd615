#pragma once

namespace corvanta::data::animation::detail {

/// A step of an engine, from one time to another. The start is the true one, not the end less the
/// step, which can round to before a key that the last step has fired.
struct Step {
  double start;
  double time;
};

/// Where a time stands about the first and the last key of a track.
enum TimeClass { kBefore = 0, kAtFirst = 1, kInside = 2, kAtLast = 3, kBehind = 4 };

constexpr TimeClass ClassifyTime(double first, double last, double time) noexcept {
  if (first > time) return kBefore;
  if (first == time) return kAtFirst;
  if (time > last) return kBehind;
  if (time == last) return kAtLast;
  return kInside;
}

/// Whether a track writes in `step`: not while time moves outside its keys, nor when it leaves an
/// end outwards; a last time when it passes out over an end.
constexpr bool MustUpdate(double first, double last, Step const& step) noexcept {
  TimeClass const now = ClassifyTime(first, last, step.time);
  switch (ClassifyTime(first, last, step.start)) {
    case kBefore:
      return now != kBefore;
    case kAtFirst:
      return now > kAtFirst;
    case kAtLast:
      return now < kAtLast;
    case kBehind:
      return now != kBehind;
    default:
      return true;
  }
}

/// Whether `step` comes to `time` or over it, from elsewhere.
constexpr bool Crosses(Step const& step, double time) noexcept {
  return (step.start < time && step.time >= time) || (step.start > time && step.time <= time);
}

}  // namespace corvanta::data::animation::detail
