#pragma once

#include "corvanta/renderer/scene/NTextures.h"

namespace corvanta::renderer {

/// The light that a matt white surface throws back under an environment, as polynomials of the
/// direction of its normal, in the picture's own frame: 1, y, z, x, xy, yz, 3 zz - 1, xz, xx - yy.
/// Formula: R. Ramamoorthi and P. Hanrahan, An efficient representation for irradiance environment
/// maps, 2001. The alpha channel counts for nothing.
/// Units: `projection` is an NEnvironmentProjection of a picture of directions.
/// Requires: the context of `texture` is current.
NHarmonics ComputeHarmonics(NTexture const& texture, int projection);

}  // namespace corvanta::renderer
