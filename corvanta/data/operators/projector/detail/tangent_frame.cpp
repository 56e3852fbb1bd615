#include "corvanta/data/operators/projector/detail/tangent_frame.h"

#include "corvanta/data/operators/projector/detail/formulas.h"

namespace corvanta::data::operators::projector::detail {

using VX_Math::Vec3;

namespace {

/// The direction of growing u, made perpendicular to the normal, and what completes the frame.
NTangentFrame CompleteFrame(Vec3 const& n, Vec3 const& binormal) {
  Vec3 tangent = binormal.Cross(n);
  tangent.Normalize();
  return {tangent, binormal};
}

/// N x `along`, or N x `instead` where the normal points along `along`.
Vec3 GetBinormal(Vec3 const& n, Vec3 const& along, Vec3 const& instead) {
  Vec3 const binormal = n.Cross(along);
  return binormal.Dot(binormal) == 0.0f ? n.Cross(instead) : binormal;
}

}  // namespace

NTangentFrame GetPlaneFrame(Vec3 const& n) {
  NTangentFrame frame = CompleteFrame(n, GetBinormal(n, {1, 0, 0}, {0, 0, 1}));
  if (n.y < 0.0f) frame.binormal.Negate();
  return frame;
}

NTangentFrame GetRoundFrame(float x, float z, Vec3 const& n) {
  Vec3 binormal = GetBinormal(n, {-z, 0, x}, {0, 1, 0});
  binormal.Normalize();
  NTangentFrame frame = CompleteFrame(n, binormal);
  if (frame.binormal.y > 0.0f) frame.binormal.Negate();
  return frame;
}

NTangentFrame GetTriplanarFrame(Vec3 const& n) {
  Vec3 const along(PickByAxis(n, 0, 1, 0), PickByAxis(n, 0, 0, 1), PickByAxis(n, 1, 0, 0));
  NTangentFrame frame = CompleteFrame(n, n.Cross(along));
  if (PickByAxis(n, n.x, n.y, n.z) < 0.0f) frame.binormal.Negate();
  return frame;
}

NTangentFrame GetBoxFrame(Vec3 const& n) {
  Vec3 const along(PickByAxis(n, 0, 1, 1), 0, PickByAxis(n, 1, 0, 0));
  return CompleteFrame(n, n.Cross(along));
}

}  // namespace corvanta::data::operators::projector::detail
