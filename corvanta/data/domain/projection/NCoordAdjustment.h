#pragma once

namespace corvanta::data::domain::projection {

/// The last step of a projection, flip, order, repeat and offset of the coordinates u, v and w, as
/// plain values: read from a node once for a whole mesh.
struct NCoordAdjustment {
  bool flip[3];
  bool exchangesUV;
  double repeat[3];  // 0: the output keeps its value from before, which the offset is added to
  double offset[3];

  /// The outputs may be the variables that the inputs came from.
  void AdjustCoord(float u, float v, float w, float& outU, float& outV,
                   float& outW) const noexcept {
    float const flippedU = flip[0] ? 1.0f - u : u;
    float const flippedV = flip[1] ? 1.0f - v : v;
    float const flippedW = flip[2] ? 1.0f - w : w;
    outU = Repeat(exchangesUV ? flippedV : flippedU, outU, 0);
    outV = Repeat(exchangesUV ? flippedU : flippedV, outV, 1);
    outW = Repeat(flippedW, outW, 2);
  }

  /// The same for the tangent `t` and the binormal `b` of such coordinates.
  void AdjustTangent(float& tx, float& ty, float& tz, float& bx, float& by,
                     float& bz) const noexcept {
    AdjustAxis(tx, bx);
    AdjustAxis(ty, by);
    AdjustAxis(tz, bz);
  }

 private:
  float Repeat(float value, float before, int axis) const noexcept {
    float const repeated = repeat[axis] != 0.0 ? static_cast<float>(repeat[axis] * value) : before;
    return static_cast<float>(repeated + offset[axis]);
  }
  void AdjustAxis(float& t, float& b) const noexcept {
    float const flippedT = flip[0] ? -t : t;
    float const flippedB = flip[1] ? -b : b;
    t = exchangesUV ? -flippedB : flippedT;
    b = exchangesUV ? -flippedT : flippedB;
  }
};

}  // namespace corvanta::data::domain::projection
