#pragma once

#include "corvanta/renderer/pass/NPicture.h"

namespace corvanta::renderer {

/// The most that the directional lamps of `lamps` together throw onto a matt white surface,
/// whichever way it is turned. Each of the others counts as if it stood right before it.
CORVANTA_API NColor GetMostLight(NLamps const& lamps);

/// Whether a pixel may be brighter than white after exposure and tone mapping: false only where
/// none can be.
/// Cost: linear in the models; exponential in the directional lamps, which kLampCount bounds.
bool CanExceedWhite(NPicture const& picture,
                    data::domain::environment::NEnvironmentNode const& environment,
                    NTextures& textures);

}  // namespace corvanta::renderer
