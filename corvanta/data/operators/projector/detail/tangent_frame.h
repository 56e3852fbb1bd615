#pragma once

#include "corvanta/data/operators/projector/detail/formulas.h"
#include "corvanta/vx_math/Vec3.h"

/// The tangent frames of one point, by the normal `n`. Free of branches, like the formulas of the
/// coordinates; `normalize(v)` gives `v` the length 1, in place.
namespace corvanta::data::operators::projector::detail {

struct NTangentFrame {
  VX_Math::Vec3 tangent;   // of length 1
  VX_Math::Vec3 binormal;  // of any length

  void CopyTo(float& tx, float& ty, float& tz, float& bx, float& by, float& bz) const {
    tx = tangent.x;
    ty = tangent.y;
    tz = tangent.z;
    bx = binormal.x;
    by = binormal.y;
    bz = binormal.z;
  }
};

inline constexpr auto NormalizeExactly = [](VX_Math::Vec3& v) { v.Normalize(); };

/// n x `along`, or n x `instead` where the normal points along `along`.
CORVANTA_INTO_CLONES VX_Math::Vec3 GetBinormal(VX_Math::Vec3 const& n, VX_Math::Vec3 const& along,
                                               VX_Math::Vec3 const& instead) {
  VX_Math::Vec3 const binormal = n.Cross(along);
  VX_Math::Vec3 const other = n.Cross(instead);
  bool const isZero = binormal.Dot(binormal) == 0.0f;
  return {isZero ? other.x : binormal.x, isZero ? other.y : binormal.y,
          isZero ? other.z : binormal.z};
}

/// The direction of growing u made perpendicular to the normal; the binormal is turned afterwards.
template <class Normalize>
CORVANTA_INTO_CLONES NTangentFrame CompleteFrame(VX_Math::Vec3 const& n,
                                                 VX_Math::Vec3 const& binormal, bool isTurned,
                                                 Normalize const& normalize) {
  VX_Math::Vec3 tangent = binormal.Cross(n);
  normalize(tangent);
  return {tangent, binormal * (isTurned ? -1.0f : 1.0f)};
}

template <class Normalize>
CORVANTA_INTO_CLONES NTangentFrame GetPlaneFrame(VX_Math::Vec3 const& n,
                                                 Normalize const& normalize) {
  return CompleteFrame(n, GetBinormal(n, {1, 0, 0}, {0, 0, 1}), n.y < 0.0f, normalize);
}

/// Of the cylinder and the sphere, at the point (x, z).
template <class Normalize>
CORVANTA_INTO_CLONES NTangentFrame GetRoundFrame(float x, float z, VX_Math::Vec3 const& n,
                                                 Normalize const& normalize) {
  VX_Math::Vec3 binormal = GetBinormal(n, {-z, 0, x}, {0, 1, 0});
  normalize(binormal);
  return CompleteFrame(n, binormal, binormal.y > 0.0f, normalize);
}

template <class Normalize>
CORVANTA_INTO_CLONES NTangentFrame GetTriplanarFrame(VX_Math::Vec3 const& n,
                                                     Normalize const& normalize) {
  VX_Math::Vec3 const along(PickByAxis(n, 0, 1, 0), PickByAxis(n, 0, 0, 1), PickByAxis(n, 1, 0, 0));
  return CompleteFrame(n, n.Cross(along), PickByAxis(n, n.x, n.y, n.z) < 0.0f, normalize);
}

template <class Normalize>
CORVANTA_INTO_CLONES NTangentFrame GetBoxFrame(VX_Math::Vec3 const& n, Normalize const& normalize) {
  VX_Math::Vec3 const along(PickByAxis(n, 0, 1, 1), 0, PickByAxis(n, 1, 0, 0));
  return CompleteFrame(n, n.Cross(along), false, normalize);
}

}  // namespace corvanta::data::operators::projector::detail
