#pragma once

namespace corvanta::renderer {

/// What a material's type says to the renderer, as bits that add up.
enum NMaterialOption : long {
  NMO_ONE_SIDED = 1,  ///< its back faces aren't drawn; the front is where a triangle is seen
                      ///< anticlockwise
};

/// How a colour texture is combined with the diffuse colour; values of a texture's operation and of
/// the shader. Every other value does as NCO_MULTIPLY.
enum NColorOperation : long {
  NCO_MULTIPLY = 0,
  NCO_ADD = 1,
  NCO_COVER = 2,         ///< it covers the colour as far as it is opaque
  NCO_IGNORE_ALPHA = 3,  ///< as NCO_MULTIPLY, and its alpha makes nothing transparent
};

/// An operation of an opacity texture from 1 to this cuts off: where the opacity is less than the
/// operation / 255, nothing is drawn, elsewhere the surface is opaque. Any other value blends.
inline constexpr long kMostCutOff = 255;

}  // namespace corvanta::renderer
