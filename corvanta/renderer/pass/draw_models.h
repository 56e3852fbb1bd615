#pragma once

#include <cstddef>
#include <vector>

#include "corvanta/renderer/pass/NPicture.h"

namespace corvanta::renderer {

/// Draws the parts of a mesh with the current program.
void DrawParts(std::vector<NMeshPart> const& parts);

/// The transform by which `item` is drawn: turned to the viewpoint where it is a billboard.
VX_Math::Matrix GetDrawnTransform(NDrawItem const& item, NViewpoint const& viewpoint);

/// The indices of the opaque or of the transparent models, the nearest first by their middles.
std::vector<std::size_t> SortByDepth(NPicture const& picture, bool areTransparent);

/// Lights and draws models in the given order.
void DrawModels(NSurfaceProgram const& program, NPicture const& picture,
                std::vector<std::size_t> const& indices);

}  // namespace corvanta::renderer
