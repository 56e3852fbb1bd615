#include "corvanta/data/animation/detail/squad.h"

#include <algorithm>
#include <cmath>

#include "corvanta/platform/d3dx9.h"

namespace corvanta::data::animation::detail {

namespace {

float GetAngle(VX_Math::Quaternion const& p, VX_Math::Quaternion const& q) noexcept {
  double const cosine = std::clamp(p.Dot(q), -1.0f, 1.0f);
  return static_cast<float>(std::acos(cosine));
}

}  // namespace

SquadSpan::SquadSpan(VX_Math::Quaternion const& before, VX_Math::Quaternion const& from,
                     VX_Math::Quaternion const& to, VX_Math::Quaternion const& after) noexcept
    : key(from) {
  platform::QuaternionSquadSetup(a, b, c, before, from, to, after);
  innerAngle = GetAngle(c, key);
  outerAngle =
      static_cast<float>(static_cast<double>(GetAngle(a, key)) + innerAngle + GetAngle(b, c));
}

VX_Math::Quaternion SquadSpan::Evaluate(float s) const noexcept {
  VX_Math::Quaternion const outer = VX_Math::Slerp(a, b, s, outerAngle);
  VX_Math::Quaternion const inner = VX_Math::Slerp(key, c, s, innerAngle);
  return VX_Math::Quaternion::Slerp(inner, outer, (1.0f - s) * (s + s));
}

}  // namespace corvanta::data::animation::detail
