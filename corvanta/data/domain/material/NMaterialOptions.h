#pragma once

namespace corvanta::data::domain::material {

/// What a material's type says, as bits that add up. A `NMaterialType` of the same value stands for
/// each.
enum NMaterialOption : long {
  NMO_ONE_SIDED = 1,  ///< its back faces aren't drawn; the front is where a triangle is seen
                      ///< anticlockwise
};

/// The low byte of a texture's operation says how it is combined, the bits above how it is
/// sampled.
inline constexpr long kCombinationMask = 0xFF;

/// How a colour texture is combined with the diffuse colour. Every other value does as
/// NCO_MULTIPLY.
enum NColorOperation : long {
  NCO_MULTIPLY = 0,
  NCO_ADD = 1,
  NCO_COVER = 2,         ///< it covers the colour as far as it is opaque
  NCO_IGNORE_ALPHA = 3,  ///< as NCO_MULTIPLY, and its alpha makes nothing transparent
};

/// An opacity texture that is combined by 1 to this cuts off: where the opacity is less than that
/// number / 255, nothing is drawn, elsewhere the surface is opaque. At 0 it blends.
inline constexpr long kMostCutOff = 255;

/// How a picture goes on along u or v outside 0 to 1.
enum NTextureWrap : long {
  NTW_REPEAT = 0,
  NTW_MIRROR = 1,  ///< it repeats, every other time turned round
  NTW_CLAMP = 2,   ///< its outermost pixels go on
};
inline constexpr int kWrapShiftU = 8;
inline constexpr int kWrapShiftV = 10;

constexpr NTextureWrap GetWrap(long operation, int shift) {
  long const wrap = operation >> shift & 3;
  return wrap <= NTW_CLAMP ? static_cast<NTextureWrap>(wrap) : NTW_REPEAT;
}
/// The bit of a picture whose pixels are seen as squares where they are large.
inline constexpr long kNearest = 1 << 12;
inline constexpr long kMostOperation = (kNearest << 1) - 1;

constexpr long MakeOperation(long combination, NTextureWrap u, NTextureWrap v) {
  return (combination & kCombinationMask) | u << kWrapShiftU | v << kWrapShiftV;
}

}  // namespace corvanta::data::domain::material
