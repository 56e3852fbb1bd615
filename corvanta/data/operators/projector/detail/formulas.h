#pragma once

#include <cmath>

#include "corvanta/data/operators/projector/detail/vector_clones.h"
#include "corvanta/data/structs/UVW.h"
#include "corvanta/vx_math/Vec3.h"

/// The coordinates of one point, in single precision. Free of branches, so that a loop over them
/// can work on several points at once.
namespace corvanta::data::operators::projector::detail {

inline constexpr float kPi = 3.1415927f;

CORVANTA_INTO_CLONES float GetLength(float a, float b) { return std::sqrt(a * a + b * b); }

/// Units: radians, taken in double.
inline float GetAngle(float y, float x) {
  return static_cast<float>(std::atan2(static_cast<double>(y), static_cast<double>(x)));
}

/// From -pi to pi, to 0 to 1.
CORVANTA_INTO_CLONES float ToTurn(float angle) { return (angle + kPi) / kPi * 0.5f; }

CORVANTA_INTO_CLONES structs::UVW ProjectOntoPlane(VX_Math::Vec3 const& p) {
  return {p.x, p.z, 0.0f};
}

/// Units: `around` is the angle of (-x, z).
CORVANTA_INTO_CLONES structs::UVW ProjectOntoCylinder(VX_Math::Vec3 const& p, float around) {
  return {ToTurn(around), p.y - 0.5f, GetLength(p.x, p.z)};
}

/// Units: `around` is the angle of (-x, z), `down` that of the distance from the axis and y.
CORVANTA_INTO_CLONES structs::UVW ProjectOntoSphere(VX_Math::Vec3 const& p, float around,
                                                    float down) {
  return {ToTurn(around), 1.0f - down / kPi, GetLength(GetLength(p.x, p.z), p.y)};
}

/// One of three values by the largest component of the normal `n`: between equals z goes before y,
/// and y before x.
CORVANTA_INTO_CLONES float PickByAxis(VX_Math::Vec3 const& n, float forX, float forY, float forZ) {
  float const x = std::fabs(n.x);
  float const y = std::fabs(n.y);
  float const z = std::fabs(n.z);
  bool const isYAboveX = y >= x;
  float const larger = isYAboveX ? y : x;
  float const beside = isYAboveX ? forY : forX;
  return z >= larger ? forZ : beside;
}

CORVANTA_INTO_CLONES structs::UVW ProjectByBox(VX_Math::Vec3 const& p, VX_Math::Vec3 const& n) {
  return {PickByAxis(n, p.z, p.x, p.x), PickByAxis(n, -p.y, p.z, -p.y),
          std::fabs(PickByAxis(n, p.x, p.y, p.z))};
}

CORVANTA_INTO_CLONES structs::UVW ProjectByTriplanar(VX_Math::Vec3 const& p,
                                                     VX_Math::Vec3 const& n) {
  return {PickByAxis(n, p.z, p.x, p.y), PickByAxis(n, p.y, p.z, p.x),
          std::fabs(PickByAxis(n, p.x, p.y, p.z))};
}

}  // namespace corvanta::data::operators::projector::detail
