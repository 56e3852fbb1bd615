#include "corvanta/renderer/pass/NShadowPass.h"

#include "corvanta/renderer/pass/draw_models.h"

namespace corvanta::renderer {

void NShadowPass::Draw(NPicture const& picture, float height) const {
  m_program.Begin(picture.viewpoint);
  glEnable(GL_STENCIL_TEST);
  glEnable(GL_BLEND);
  glEnable(GL_POLYGON_OFFSET_FILL);
  glPolygonOffset(2.0f, 2.0f);
  glDepthMask(GL_FALSE);
  glStencilOp(GL_KEEP, GL_KEEP, GL_INVERT);
  for (unsigned lamp = 0; lamp != kShadowCount; ++lamp) {
    if (picture.lamps.shadows[lamp] > 0.0f) DrawModels(picture, lamp, height);
  }
  glStencilMask(0xFF);
  glDepthMask(GL_TRUE);
  glDisable(GL_POLYGON_OFFSET_FILL);
  glDisable(GL_BLEND);
  glDisable(GL_STENCIL_TEST);
}

void NShadowPass::DrawModels(NPicture const& picture, unsigned lamp, float height) const {
  glStencilMask(1u << lamp);
  glStencilFunc(GL_EQUAL, kFloorStencilBit, kFloorStencilBit | 1u << lamp);
  float const* const direction = &picture.lamps.directions[std::size_t{3} * lamp];
  float const x = direction[0] / direction[1], z = direction[2] / direction[1];
  VX_Math::Matrix const flat(1, 0, 0, 0, -x, 0, -z, 0, 0, 0, 1, 0, height * x, height, height * z,
                             1);
  auto const& models = picture.scene.GetModels();
  for (std::size_t i = 0; i != models.size(); ++i) {
    NDrawItem const& item = picture.scene.GetItems()[i];
    if (!item.hasFiniteTransform || !item.model->DropsShadow()) continue;
    m_program.SetColor(
        {0.0f, 0.0f, 0.0f, picture.lamps.shadows[lamp] * models[i].material->opacity});
    m_program.SetTransform(item.global * flat);
    DrawParts(models[i].parts);
  }
}

}  // namespace corvanta::renderer
