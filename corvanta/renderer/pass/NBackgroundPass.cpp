#include "corvanta/renderer/pass/NBackgroundPass.h"

#include <algorithm>

namespace corvanta::renderer {

NBackgroundPass::NBackgroundPass()
    : m_program(kBackgroundVertexShader, kBackgroundFragmentShader),
      m_clipToWorld(m_program.GetUniform("clipToWorld")),
      m_isPerspective(m_program.GetUniform("isPerspective")),
      m_projection(m_program.GetUniform("environmentProjection")),
      m_rotation(m_program.GetUniform("environmentRotation")),
      m_exposure(m_program.GetUniform("exposure")),
      m_gamma(m_program.GetUniform("gamma")),
      m_white(m_program.GetUniform("white")) {
  SetEnvironmentUnits(m_program);
}

void NBackgroundPass::Draw(NPicture const& picture,
                           data::domain::environment::NEnvironmentNode const& environment,
                           NTextures& textures) const {
  if (auto const image = environment.Get2DImage()) {
    NEnvironmentTexture texture;
    texture.projection = NEP_SCREEN;
    texture.texture = textures.Get(*image, NTC_COLOR).texture.Get();
    NExposure exposure = picture.exposure;
    exposure.factor *= static_cast<float>(environment.GetImageExposure());
    exposure.gamma *= std::max(static_cast<float>(environment.GetImageGamma()), 1e-3f);
    Draw(picture.viewpoint, texture, exposure);
    return;
  }
  auto const model = environment.GetEnvironmentMapModel();
  if (model && !model->IsVisible()) return;
  Draw(picture.viewpoint, picture.environment, picture.exposure);
}

void NBackgroundPass::Draw(NViewpoint const& viewpoint, NEnvironmentTexture const& texture,
                           NExposure const& exposure) const {
  if (!texture.Exists()) return;
  m_program.Use();
  // What is infinitely far looks the same from everywhere.
  VX_Math::Matrix rotation = viewpoint.view;
  for (int axis = 0; axis != 3; ++axis) rotation(3, axis) = 0.0f;
  VX_Math::Matrix const clipToWorld = (rotation * viewpoint.projection).Inverse();
  glUniformMatrix4fv(m_clipToWorld, 1, GL_FALSE, clipToWorld[0]);
  glUniform1i(m_isPerspective, viewpoint.position[3] != 0.0f);
  glUniform1i(m_projection, texture.projection);
  SetMatrix3(m_rotation, texture.rotation);
  glUniform1f(m_exposure, exposure.factor);
  glUniform1f(m_gamma, exposure.gamma);
  glUniform1f(m_white, exposure.white);
  BindEnvironmentTexture(texture);
  glBindVertexArray(m_noVertices.Get());
  glDisable(GL_DEPTH_TEST);
  glDrawArrays(GL_TRIANGLES, 0, 3);
  glEnable(GL_DEPTH_TEST);
}

}  // namespace corvanta::renderer
