#include "corvanta/renderer/pass/NSurfaceProgram.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

namespace corvanta::renderer {

namespace {

using VX_Math::Matrix;

constexpr char const* kMaps[NTS_COUNT] = {"colorMap", "bumpMap", "specularMap", "emissiveMap",
                                          "opacityMap"};

template <class Enumeration, std::size_t N>
void SetEnumerators(GLint uniform, std::array<Enumeration, N> const& enumerators) {
  std::array<GLint, N> values;
  std::copy(enumerators.begin(), enumerators.end(), values.begin());
  glUniform1iv(uniform, static_cast<GLsizei>(N), values.data());
}

}  // namespace

void SetMatrix3(GLint uniform, Matrix const& matrix) {
  float const rows[9] = {matrix(0, 0), matrix(0, 1), matrix(0, 2), matrix(1, 0), matrix(1, 1),
                         matrix(1, 2), matrix(2, 0), matrix(2, 1), matrix(2, 2)};
  glUniformMatrix3fv(uniform, 1, GL_FALSE, rows);
}

void BindEnvironmentTexture(NEnvironmentTexture const& environment) {
  if (!environment.Exists()) return;
  bool const isCube = environment.projection == NEP_CUBE;
  int const unit = isCube ? kEnvironmentCubeUnit : kEnvironmentImageUnit;
  glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
  glBindTexture(isCube ? GL_TEXTURE_CUBE_MAP : GL_TEXTURE_2D, environment.texture);
}

void SetEnvironmentUnits(NProgram const& program) {
  program.Use();
  glUniform1i(program.GetUniform("environmentCube"), kEnvironmentCubeUnit);
  glUniform1i(program.GetUniform("environmentImage"), kEnvironmentImageUnit);
}

NSurfaceProgram::NSurfaceProgram(bool hasAlphaTest)
    : m_program(kSurfaceVertexShader, std::string("#version 330 core\n") +
                                          (hasAlphaTest ? "#define ALPHA_TEST\n" : "") +
                                          kSurfaceFragmentShader),
      m_world(m_program.GetUniform("world")),
      m_normalWorld(m_program.GetUniform("normalWorld")),
      m_viewProjection(m_program.GetUniform("viewProjection")),
      m_depthRange(m_program.GetUniform("depthRange")),
      m_viewpoint(m_program.GetUniform("viewpoint")),
      m_diffuse(m_program.GetUniform("diffuse")),
      m_ambient(m_program.GetUniform("ambient")),
      m_specular(m_program.GetUniform("specular")),
      m_emissive(m_program.GetUniform("emissive")),
      m_power(m_program.GetUniform("power")),
      m_opacity(m_program.GetUniform("opacity")),
      m_bounds(m_program.GetUniform("bounds")),
      m_colorOperation(m_program.GetUniform("colorOperation")),
      m_bumpContent(m_program.GetUniform("bumpContent")),
      m_bumpScale(m_program.GetUniform("bumpScale")),
      m_opacityInAlpha(m_program.GetUniform("opacityInAlpha")),
      m_wireframe(m_program.GetUniform("wireframe")),
      m_directionalCount(m_program.GetUniform("directionalCount")),
      m_lampCount(m_program.GetUniform("lampCount")),
      m_specularCount(m_program.GetUniform("specularCount")),
      m_lampType(m_program.GetUniform("lampType")),
      m_lampColor(m_program.GetUniform("lampColor")),
      m_lampPosition(m_program.GetUniform("lampPosition")),
      m_lampDirection(m_program.GetUniform("lampDirection")),
      m_lampCone(m_program.GetUniform("lampCone")),
      m_lampRange(m_program.GetUniform("lampRange")),
      m_lampAttenuation(m_program.GetUniform("lampAttenuation")),
      m_reflection(m_program.GetUniform("reflection")),
      m_normalReflectance(m_program.GetUniform("normalReflectance")),
      m_reflectionLod(m_program.GetUniform("reflectionLod")),
      m_environmentProjection(m_program.GetUniform("environmentProjection")),
      m_environmentRotation(m_program.GetUniform("environmentRotation")),
      m_used(m_program.GetUniform("used")),
      m_reflectionCount(m_program.GetUniform("reflectionCount")),
      m_gammaCount(m_program.GetUniform("gammaCount")),
      m_exposure(m_program.GetUniform("exposure")),
      m_gamma(m_program.GetUniform("gamma")),
      m_white(m_program.GetUniform("white")) {
  m_program.Use();
  for (NTextureSlot const slot : kTextureSlots) {
    glUniform1i(m_program.GetUniform(kMaps[slot]), slot);
  }
  SetEnvironmentUnits(m_program);
}

void NSurfaceProgram::Begin(NViewpoint const& viewpoint, NLamps const& lamps,
                            NExposure const& exposure) const {
  constexpr auto kCount = static_cast<GLsizei>(kLampCount);
  m_program.Use();
  Matrix const viewProjection = viewpoint.GetReversedDepthViewProjection();
  glUniformMatrix4fv(m_viewProjection, 1, GL_FALSE, viewProjection[0]);
  glUniform2fv(m_depthRange, 1, GetDepthRange().data());
  glUniform4fv(m_viewpoint, 1, viewpoint.position.data());
  glUniform1i(m_directionalCount, lamps.directionalCount);
  glUniform1i(m_lampCount, lamps.count);
  SetEnumerators(m_lampType, lamps.types);
  SetEnumerators(m_lampAttenuation, lamps.attenuations);
  glUniform3fv(m_lampColor, kCount, lamps.colors.data());
  glUniform3fv(m_lampPosition, kCount, lamps.positions.data());
  glUniform3fv(m_lampDirection, kCount, lamps.directions.data());
  glUniform2fv(m_lampCone, kCount, lamps.cones.data());
  glUniform1fv(m_lampRange, kCount, lamps.ranges.data());
  glUniform1f(m_exposure, exposure.factor);
  glUniform1i(m_gammaCount, exposure.gamma != 1.0f);
  glUniform1f(m_gamma, exposure.gamma);
  glUniform1f(m_white, exposure.white);
}

void NSurfaceProgram::SetMaterial(NMaterialParameters const& material, NColor const& ambientLight,
                                  NLamps const& lamps,
                                  NEnvironmentTexture const& environment) const {
  bool const hasHighlights = material.specular != NColor{};
  glUniform1i(m_specularCount, hasHighlights ? lamps.directionalCount : 0);
  NColor const ambient{material.ambient[0] * ambientLight[0], material.ambient[1] * ambientLight[1],
                       material.ambient[2] * ambientLight[2]};
  glUniform3fv(m_diffuse, 1, material.diffuse.data());
  glUniform3fv(m_ambient, 1, ambient.data());
  glUniform3fv(m_specular, 1, material.specular.data());
  glUniform3fv(m_emissive, 1, material.emissive.data());
  glUniform1f(m_power, material.power);
  glUniform1f(m_opacity, material.opacity);
  SetTextures(material);
  NEnvironmentTexture const& reflected =
      material.environment.Exists() ? material.environment : environment;
  bool const isReflecting = material.reflection > 0.0f && reflected.Exists();
  glUniform1i(m_reflectionCount, isReflecting);
  if (!isReflecting) return;
  glUniform1f(m_reflection, material.reflection);
  glUniform1f(m_normalReflectance, material.normalReflectance);
  glUniform1f(m_reflectionLod, material.reflectionLod);
  glUniform1i(m_environmentProjection, reflected.projection);
  SetMatrix3(m_environmentRotation, reflected.rotation);
  BindEnvironmentTexture(reflected);
}

void NSurfaceProgram::SetTextures(NMaterialParameters const& material) const {
  glUniform1i(m_bounds, material.bounds);
  glUniform1i(m_colorOperation, material.colorOperation);
  glUniform1i(m_bumpContent, material.bumpContent);
  glUniform1f(m_bumpScale, material.bumpScale);
  glUniform1i(m_opacityInAlpha, material.opacityInAlpha);
  GLint used[NTS_COUNT];
  for (NTextureSlot const slot : kTextureSlots) {
    used[slot] = material.HasTexture(slot);
    if (!material.HasTexture(slot)) continue;
    glActiveTexture(GL_TEXTURE0 + slot);
    glBindTexture(GL_TEXTURE_2D, material.textures[slot]);
  }
  glUniform1iv(m_used, NTS_COUNT, used);
}

void NSurfaceProgram::SetWireframe(bool isWireframe) const {
  glUniform1i(m_wireframe, isWireframe);
  glPolygonMode(GL_FRONT_AND_BACK, isWireframe ? GL_LINE : GL_FILL);
}

void NSurfaceProgram::SetTransform(Matrix const& global, Matrix const& normals) const {
  glUniformMatrix4fv(m_world, 1, GL_FALSE, global[0]);
  SetMatrix3(m_normalWorld, normals);
}

}  // namespace corvanta::renderer
