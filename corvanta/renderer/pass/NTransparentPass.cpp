#include "corvanta/renderer/pass/NTransparentPass.h"

#include <algorithm>

#include "corvanta/renderer/pass/draw_models.h"

namespace corvanta::renderer {

void NTransparentPass::Draw(NPicture const& picture) const {
  std::vector<std::size_t> indices = SortByDepth(picture, true);
  if (indices.empty()) return;
  std::reverse(indices.begin(), indices.end());
  m_program.Begin(picture.viewpoint, picture.lamps, picture.exposure);
  glEnable(GL_BLEND);
  glDepthMask(GL_FALSE);
  DrawModels(m_program, picture, indices);
  glDepthMask(GL_TRUE);
  glDisable(GL_BLEND);
}

}  // namespace corvanta::renderer
