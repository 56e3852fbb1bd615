#pragma once

#include "corvanta/vx_math/Vec3.h"

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

/// The frames of the projectors, by the normal `n`; both the cylinder and the sphere have the round
/// one.
NTangentFrame GetPlaneFrame(VX_Math::Vec3 const& n);
NTangentFrame GetRoundFrame(float x, float z, VX_Math::Vec3 const& n);
NTangentFrame GetTriplanarFrame(VX_Math::Vec3 const& n);
NTangentFrame GetBoxFrame(VX_Math::Vec3 const& n);

}  // namespace corvanta::data::operators::projector::detail
