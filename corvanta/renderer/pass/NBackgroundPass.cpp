#include "corvanta/renderer/pass/NBackgroundPass.h"

#include <algorithm>

namespace corvanta::renderer {

void NBackgroundPass::Draw(NPicture const& picture,
                           data::domain::environment::NEnvironmentNode const& environment,
                           NTextures& textures) {
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
                           NExposure const& exposure) {
  if (!texture.Exists()) return;
  NBackgroundKey const key{texture.projection, exposure.white > 0.0f, exposure.gamma != 1.0f};
  auto found = m_programs.find(key);
  if (found == m_programs.end()) {
    found = m_programs.try_emplace(key, kBackgroundVertexShader, MakeBackgroundFragmentShader(key))
                .first;
    SetEnvironmentUnits(found->second);
  }
  NProgram const& program = found->second;
  program.Use();
  // What is infinitely far looks the same from everywhere.
  VX_Math::Matrix rotation = viewpoint.view;
  for (int axis = 0; axis != 3; ++axis) rotation(3, axis) = 0.0f;
  VX_Math::Matrix const clipToWorld = (rotation * viewpoint.projection).Inverse();
  glUniformMatrix4fv(program.GetUniform("clipToWorld"), 1, GL_FALSE, clipToWorld[0]);
  glUniform1i(program.GetUniform("isPerspective"), viewpoint.position[3] != 0.0f);
  SetMatrix3(program.GetUniform("environmentRotation"), texture.rotation);
  glUniform1f(program.GetUniform("exposure"), exposure.factor);
  glUniform1f(program.GetUniform("gamma"), exposure.gamma);
  glUniform1f(program.GetUniform("white"), exposure.white);
  BindEnvironmentTexture(texture);
  glBindVertexArray(m_noVertices.Get());
  glDisable(GL_DEPTH_TEST);
  glDrawArrays(GL_TRIANGLES, 0, 3);
  glEnable(GL_DEPTH_TEST);
}

}  // namespace corvanta::renderer
