#include "corvanta/renderer/pass/NShadowPass.h"

#include "corvanta/renderer/pass/draw_models.h"

namespace corvanta::renderer {

void NShadowPass::Draw(NInstances& instances, NPicture const& picture, float height) const {
  m_program.Begin(picture.viewpoint);
  glEnable(GL_STENCIL_TEST);
  glEnable(GL_BLEND);
  glEnable(GL_POLYGON_OFFSET_FILL);
  glPolygonOffset(2.0f, 2.0f);
  glDepthMask(GL_FALSE);
  glStencilOp(GL_KEEP, GL_KEEP, GL_INVERT);
  for (unsigned lamp = 0; lamp != kShadowCount; ++lamp) {
    if (picture.lamps.shadows[lamp] > 0.0f) DrawModels(instances, picture, lamp, height);
  }
  glStencilMask(0xFF);
  glDepthMask(GL_TRUE);
  glDisable(GL_POLYGON_OFFSET_FILL);
  glDisable(GL_BLEND);
  glDisable(GL_STENCIL_TEST);
}

void NShadowPass::DrawModels(NInstances& instances, NPicture const& picture, unsigned lamp,
                             float height) const {
  glStencilMask(1u << lamp);
  glStencilFunc(GL_EQUAL, kFloorStencilBit, kFloorStencilBit | 1u << lamp);
  float const* const direction = &picture.lamps.directions[std::size_t{3} * lamp];
  float const x = direction[0] / direction[1], z = direction[2] / direction[1];
  VX_Math::Matrix const flat(1, 0, 0, 0, -x, 0, -z, 0, 0, 0, 1, 0, height * x, height, height * z,
                             1);
  auto const& models = picture.scene.GetModels();
  std::vector<NFlatInstance> flats;
  std::vector<std::size_t> indices;
  for (std::size_t i = 0; i != models.size(); ++i) {
    NDrawItem const& item = picture.scene.GetItems()[i];
    if (!item.hasFiniteTransform || !item.model->DropsShadow()) continue;
    flats.emplace_back(item.global * flat, std::array<float, 4>{0.0f, 0.0f, 0.0f,
                                                                picture.lamps.shadows[lamp] *
                                                                    models[i].material->opacity});
    indices.push_back(i);
  }
  DrawFlats(instances, picture.scene, flats, indices, false);
}

}  // namespace corvanta::renderer
