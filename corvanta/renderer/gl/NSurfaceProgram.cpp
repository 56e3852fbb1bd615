#include "corvanta/renderer/gl/NSurfaceProgram.h"

#include <cstddef>
#include <string>

namespace corvanta::renderer {

namespace {

using VX_Math::Matrix;

constexpr char const* kMaps[NS_COUNT] = {"colorMap", "bumpMap", "specularMap", "emissiveMap",
                                         "opacityMap"};

}  // namespace

void SetTurn(GLint uniform, Matrix const& matrix) {
  float const turn[9] = {matrix(0, 0), matrix(0, 1), matrix(0, 2), matrix(1, 0), matrix(1, 1),
                         matrix(1, 2), matrix(2, 0), matrix(2, 1), matrix(2, 2)};
  glUniformMatrix3fv(uniform, 1, GL_FALSE, turn);
}

void BindSky(NSky const& sky) {
  if (sky.kind < 0) return;
  bool const isCube = sky.kind == 0;
  glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(isCube ? kCubeUnit : kFlatUnit));
  glBindTexture(isCube ? GL_TEXTURE_CUBE_MAP : GL_TEXTURE_2D, sky.texture);
}

NSurfaceProgram::NSurfaceProgram(bool hasHoles)
    : m_program(kSurfaceVertexShader, std::string("#version 330 core\n") +
                                          (hasHoles ? "#define HAS_HOLES\n" : "") +
                                          kSurfaceFragmentShader),
      m_world(m_program.GetUniform("world")),
      m_normalWorld(m_program.GetUniform("normalWorld")),
      m_viewProjection(m_program.GetUniform("viewProjection")),
      m_depthRange(m_program.GetUniform("depthRange")),
      m_eye(m_program.GetUniform("eye")),
      m_diffuse(m_program.GetUniform("diffuse")),
      m_ambient(m_program.GetUniform("ambient")),
      m_specular(m_program.GetUniform("specular")),
      m_emissive(m_program.GetUniform("emissive")),
      m_power(m_program.GetUniform("power")),
      m_opacity(m_program.GetUniform("opacity")),
      m_bounds(m_program.GetUniform("bounds")),
      m_colorOperation(m_program.GetUniform("colorOperation")),
      m_bumpKind(m_program.GetUniform("bumpKind")),
      m_bumpScale(m_program.GetUniform("bumpScale")),
      m_opacityInAlpha(m_program.GetUniform("opacityInAlpha")),
      m_wired(m_program.GetUniform("wired")),
      m_farCount(m_program.GetUniform("farCount")),
      m_lampCount(m_program.GetUniform("lampCount")),
      m_shineCount(m_program.GetUniform("shineCount")),
      m_lampKind(m_program.GetUniform("lampKind")),
      m_lampColor(m_program.GetUniform("lampColor")),
      m_lampPlace(m_program.GetUniform("lampPlace")),
      m_lampDirection(m_program.GetUniform("lampDirection")),
      m_lampCone(m_program.GetUniform("lampCone")),
      m_lampRange(m_program.GetUniform("lampRange")),
      m_lampFade(m_program.GetUniform("lampFade")),
      m_mirror(m_program.GetUniform("mirror")),
      m_mirrorFloor(m_program.GetUniform("mirrorFloor")),
      m_mirrorBlur(m_program.GetUniform("mirrorBlur")),
      m_skyKind(m_program.GetUniform("skyKind")),
      m_skyTurn(m_program.GetUniform("skyTurn")),
      m_used(m_program.GetUniform("used")),
      m_mirrorCount(m_program.GetUniform("mirrorCount")),
      m_gammaCount(m_program.GetUniform("gammaCount")),
      m_exposure(m_program.GetUniform("exposure")),
      m_gamma(m_program.GetUniform("gamma")),
      m_white(m_program.GetUniform("white")) {
  m_program.Use();
  for (int slot = 0; slot != NS_COUNT; ++slot) {
    glUniform1i(m_program.GetUniform(kMaps[slot]), slot);
  }
  glUniform1i(m_program.GetUniform("skyCube"), kCubeUnit);
  glUniform1i(m_program.GetUniform("skyFlat"), kFlatUnit);
}

void NSurfaceProgram::Begin(NEye const& eye, NLamps const& lamps, NExposure const& exposure) const {
  constexpr auto kCount = static_cast<GLsizei>(kLampCount);
  m_program.Use();
  Matrix const viewProjection = eye.GetDrawnViewProjection();
  glUniformMatrix4fv(m_viewProjection, 1, GL_FALSE, viewProjection[0]);
  glUniform2fv(m_depthRange, 1, GetDepthRange().data());
  glUniform4fv(m_eye, 1, eye.towards.data());
  glUniform1i(m_farCount, lamps.farCount);
  glUniform1i(m_lampCount, lamps.count);
  glUniform1iv(m_lampKind, kCount, lamps.kinds.data());
  glUniform1iv(m_lampFade, kCount, lamps.fades.data());
  glUniform3fv(m_lampColor, kCount, lamps.colors.data());
  glUniform3fv(m_lampPlace, kCount, lamps.places.data());
  glUniform3fv(m_lampDirection, kCount, lamps.directions.data());
  glUniform2fv(m_lampCone, kCount, lamps.cones.data());
  glUniform1fv(m_lampRange, kCount, lamps.ranges.data());
  glUniform1f(m_exposure, exposure.factor);
  glUniform1i(m_gammaCount, exposure.gamma != 1.0f);
  glUniform1f(m_gamma, exposure.gamma);
  glUniform1f(m_white, exposure.white);
}

void NSurfaceProgram::SetShade(NShade const& shade, NColor const& ambientLight, NLamps const& lamps,
                               NSky const& sky) const {
  bool const hasHighlights = shade.specular != NColor{};
  glUniform1i(m_shineCount, hasHighlights ? lamps.farCount : 0);
  GLint used[NS_COUNT];
  for (unsigned slot = 0; slot != NS_COUNT; ++slot) used[slot] = shade.slots >> slot & 1;
  glUniform1iv(m_used, NS_COUNT, used);
  NColor const ambient{shade.ambient[0] * ambientLight[0], shade.ambient[1] * ambientLight[1],
                       shade.ambient[2] * ambientLight[2]};
  glUniform3fv(m_diffuse, 1, shade.diffuse.data());
  glUniform3fv(m_ambient, 1, ambient.data());
  glUniform3fv(m_specular, 1, shade.specular.data());
  glUniform3fv(m_emissive, 1, shade.emissive.data());
  glUniform1f(m_power, shade.power);
  glUniform1f(m_opacity, shade.opacity);
  glUniform1i(m_bounds, shade.bounds);
  glUniform1i(m_colorOperation, shade.colorOperation);
  glUniform1i(m_bumpKind, shade.bumpKind);
  glUniform1f(m_bumpScale, shade.bumpScale);
  glUniform1i(m_opacityInAlpha, shade.opacityInAlpha);
  for (unsigned slot = 0; slot != NS_COUNT; ++slot) {
    if ((shade.slots & 1 << slot) == 0) continue;
    glActiveTexture(GL_TEXTURE0 + slot);
    glBindTexture(GL_TEXTURE_2D, shade.textures[slot]);
  }
  NSky const& mirrored = shade.sky.kind >= 0 ? shade.sky : sky;
  bool const isMirror = shade.mirror > 0.0f && mirrored.kind >= 0;
  glUniform1i(m_mirrorCount, isMirror);
  if (!isMirror) return;
  glUniform1f(m_mirror, shade.mirror);
  glUniform1f(m_mirrorFloor, shade.mirrorFloor);
  glUniform1f(m_mirrorBlur, shade.mirrorBlur);
  glUniform1i(m_skyKind, mirrored.kind);
  SetTurn(m_skyTurn, mirrored.turn);
  BindSky(mirrored);
}

void NSurfaceProgram::SetWired(bool isWired) const {
  glUniform1i(m_wired, isWired);
  glPolygonMode(GL_FRONT_AND_BACK, isWired ? GL_LINE : GL_FILL);
}

void NSurfaceProgram::SetPlace(Matrix const& global, Matrix const& normals) const {
  glUniformMatrix4fv(m_world, 1, GL_FALSE, global[0]);
  SetTurn(m_normalWorld, normals);
}

}  // namespace corvanta::renderer
