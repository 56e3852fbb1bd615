#include "corvanta/renderer/pass/NOpaquePass.h"

#include "corvanta/renderer/pass/draw_models.h"

namespace corvanta::renderer {

void NOpaquePass::Draw(NPicture const& picture) const {
  m_program.Begin(picture.viewpoint, picture.lamps, picture.exposure);
  DrawModels(m_program, picture, SortByDepth(picture, false));
}

}  // namespace corvanta::renderer
