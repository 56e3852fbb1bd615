#pragma once

#include <cstddef>
#include <vector>

#include "corvanta/renderer/pass/NFlatProgram.h"
#include "corvanta/renderer/pass/NInstances.h"
#include "corvanta/renderer/pass/NPicture.h"
#include "corvanta/renderer/pass/NSurfacePrograms.h"

namespace corvanta::renderer {

/// The transform by which `item` is drawn: turned to the viewpoint where it is a billboard.
VX_Math::Matrix GetDrawnTransform(NDrawItem const& item, NViewpoint const& viewpoint);

/// Lights and draws the opaque models, the nearest first by their middles, so that what they hide
/// needn't be lit; those of one mesh and material at once, where the nearest of them is. Of two
/// models at one depth the first drawn is seen, if the depth function is GL_GREATER.
void DrawOpaqueModels(NSurfacePrograms& programs, NInstances& instances, NPicture const& picture);
/// Blends the transparent models over what is drawn, the farthest first, so that each is seen
/// through the next, and of each what faces away first. It writes no depth.
void DrawTransparentModels(NSurfacePrograms& programs, NInstances& instances,
                           NPicture const& picture);

/// Draws `flats` with the current program; `models` are the indices of their models. Neighbours of
/// one mesh are drawn at once, but for meshes of several parts where `keepsOrder`.
void DrawFlats(NInstances& instances, NResolvedScene const& scene,
               std::vector<NFlatInstance> const& flats, std::vector<std::size_t> const& models,
               bool keepsOrder);

/// Draws the edges of all triangles as dark lines over what is drawn.
void DrawEdges(NFlatProgram const& program, NInstances& instances, NPicture const& picture);

}  // namespace corvanta::renderer
