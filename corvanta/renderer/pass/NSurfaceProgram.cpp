#include "corvanta/renderer/pass/NSurfaceProgram.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

namespace corvanta::renderer {

namespace {

using VX_Math::Matrix;

constexpr char const* kMaps[NTS_COUNT] = {"colorMap",     "bumpMap",     "specularMap",
                                          "emissiveMap",  "opacityMap",  "metalnessMap",
                                          "roughnessMap", "occlusionMap"};

template <class Enumeration, std::size_t N>
void SetEnumerators(GLint uniform, std::array<Enumeration, N> const& enumerators) {
  std::array<GLint, N> values;
  std::copy(enumerators.begin(), enumerators.end(), values.begin());
  glUniform1iv(uniform, static_cast<GLsizei>(N), values.data());
}

/// What is reflected along the normal: it has the hue of the highlight, and the index's brightness.
NColor GetMirrored(NMaterialParameters const& material) {
  NColor const& c = material.specular;
  float const luminance = 0.2126f * c[0] + 0.7152f * c[1] + 0.0722f * c[2];  // ITU-R BT.709
  float const share = luminance > 0.0f ? material.fresnel[0] / luminance : 0.0f;
  NColor mirrored;
  for (std::size_t k = 0; k != 3; ++k) {
    mirrored[k] = luminance > 0.0f ? std::min(c[k] * share, 1.0f) : material.fresnel[0];
  }
  return mirrored;
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

NSurfaceProgram::NSurfaceProgram(NSurfaceKey const& key)
    : m_program(MakeSurfaceVertexShader(key), MakeSurfaceFragmentShader(key)),
      m_features(key.features),
      m_viewProjection(m_program.GetUniform("viewProjection")),
      m_depthRange(m_program.GetUniform("depthRange")),
      m_viewpoint(m_program.GetUniform("viewpoint")),
      m_diffuse(m_program.GetUniform("diffuse")),
      m_ambient(m_program.GetUniform("ambient")),
      m_specular(m_program.GetUniform("specular")),
      m_emissive(m_program.GetUniform("emissive")),
      m_power(m_program.GetUniform("power")),
      m_opacity(m_program.GetUniform("opacity")),
      m_cutOff(m_program.GetUniform("cutOff")),
      m_rough(m_program.GetUniform("rough")),
      m_coatReflectance(m_program.GetUniform("coatReflectance")),
      m_fleckColor(m_program.GetUniform("fleckColor")),
      m_fleckSize(m_program.GetUniform("fleckSize")),
      m_fleckPerturbation(m_program.GetUniform("fleckPerturbation")),
      m_bounds(m_program.GetUniform("bounds")),
      m_colorOperation(m_program.GetUniform("colorOperation")),
      m_bumpContent(m_program.GetUniform("bumpContent")),
      m_bumpScale(m_program.GetUniform("bumpScale")),
      m_opacityInAlpha(m_program.GetUniform("opacityInAlpha")),
      m_dataScales(m_program.GetUniform("dataScales")),
      m_lampCount(m_program.GetUniform("lampCount")),
      m_lampType(m_program.GetUniform("lampType")),
      m_lampColor(m_program.GetUniform("lampColor")),
      m_lampPosition(m_program.GetUniform("lampPosition")),
      m_lampDirection(m_program.GetUniform("lampDirection")),
      m_lampCone(m_program.GetUniform("lampCone")),
      m_lampRange(m_program.GetUniform("lampRange")),
      m_lampAttenuation(m_program.GetUniform("lampAttenuation")),
      m_reflection(m_program.GetUniform("reflection")),
      m_mirror(m_program.GetUniform("mirror")),
      m_fresnel(m_program.GetUniform("fresnel")),
      m_reflectionLod(m_program.GetUniform("reflectionLod")),
      m_environmentContrast(m_program.GetUniform("environmentContrast")),
      m_irradiance(m_program.GetUniform("irradiance")),
      m_harmonics(m_program.GetUniform("harmonics")),
      m_environmentProjection(m_program.GetUniform("environmentProjection")),
      m_environmentRotation(m_program.GetUniform("environmentRotation")),
      m_exposure(m_program.GetUniform("exposure")),
      m_gamma(m_program.GetUniform("gamma")),
      m_white(m_program.GetUniform("white")),
      m_diffuseWeight(m_program.GetUniform("diffuseWeight")) {
  m_program.Use();
  for (NTextureSlot const slot : kTextureSlots) {
    glUniform1i(m_program.GetUniform(kMaps[slot]), slot);
  }
  SetEnvironmentUnits(m_program);
}

void NSurfaceProgram::Begin(NViewpoint const& viewpoint, NLamps const& lamps,
                            NExposure const& exposure) const {
  m_program.Use();
  Matrix const viewProjection = viewpoint.GetReversedDepthViewProjection();
  glUniformMatrix4fv(m_viewProjection, 1, GL_FALSE, viewProjection[0]);
  glUniform2fv(m_depthRange, 1, GetDepthRange().data());
  glUniform4fv(m_viewpoint, 1, viewpoint.position.data());
  glUniform1i(m_lampCount, lamps.count);
  SetEnumerators(m_lampType, lamps.types);
  SetEnumerators(m_lampAttenuation, lamps.attenuations);
  auto const count = static_cast<GLsizei>(lamps.count);
  glUniform3fv(m_lampColor, count, lamps.colors.data());
  glUniform3fv(m_lampPosition, count, lamps.positions.data());
  glUniform3fv(m_lampDirection, count, lamps.directions.data());
  glUniform2fv(m_lampCone, count, lamps.cones.data());
  glUniform1fv(m_lampRange, count, lamps.ranges.data());
  glUniform1f(m_exposure, exposure.factor);
  glUniform1f(m_gamma, exposure.gamma);
  glUniform1f(m_white, exposure.white);
  glUniform1f(m_diffuseWeight, exposure.diffuse);
}

void NSurfaceProgram::SetMaterial(NMaterialParameters const& material, NColor const& ambientLight,
                                  float fleckUnit, NEnvironmentTexture const& environment) const {
  m_program.Use();
  NColor const ambient{material.ambient[0] * ambientLight[0], material.ambient[1] * ambientLight[1],
                       material.ambient[2] * ambientLight[2]};
  // A line of metal has the colour of its highlight.
  bool const isMetal = (m_features & NSF_LINES) != 0 && material.diffuse == NColor{};
  glUniform3fv(m_diffuse, 1, isMetal ? material.specular.data() : material.diffuse.data());
  glUniform3fv(m_ambient, 1, ambient.data());
  glUniform3fv(m_emissive, 1, material.emissive.data());
  glUniform1f(m_opacity, material.opacity);
  glUniform3fv(m_specular, 1, material.specular.data());
  glUniform1f(m_power, material.power);
  glUniform1f(m_cutOff, material.cutOff);
  SetFinish(material, fleckUnit);
  SetTextures(material);
  if ((m_features & (NSF_REFLECTION | NSF_IRRADIANCE)) == 0) return;
  glUniform1f(m_reflection, material.reflection);
  glUniform3fv(m_mirror, 1, GetMirrored(material).data());
  glUniform3fv(m_fresnel, 1, &material.fresnel[1]);
  glUniform1f(m_reflectionLod, material.reflectionLod);
  glUniform1f(m_environmentContrast, material.environmentContrast);
  glUniform1f(m_irradiance, material.irradiance);
  if (environment.harmonics != nullptr) glUniform3fv(m_harmonics, 9, environment.harmonics->data());
  glUniform1i(m_environmentProjection, environment.projection);
  SetMatrix3(m_environmentRotation, environment.rotation);
  BindEnvironmentTexture(environment);
}

void NSurfaceProgram::SetFinish(NMaterialParameters const& material, float fleckUnit) const {
  float const square = material.roughness * material.roughness;
  glUniform2f(m_rough, 1.0f - 0.5f * square / (square + 0.33f), 0.45f * square / (square + 0.09f));
  glUniform1f(m_coatReflectance, material.coatReflectance);
  glUniform3fv(m_fleckColor, 1, material.fleckColor.data());
  glUniform1f(m_fleckSize, std::max(material.fleckSize * fleckUnit, 1e-30f));
  glUniform1f(m_fleckPerturbation, material.fleckPerturbation);
}

void NSurfaceProgram::SetTextures(NMaterialParameters const& material) const {
  glUniform1i(m_bounds, material.bounds);
  glUniform1i(m_colorOperation, material.colorOperation);
  glUniform1i(m_bumpContent, material.bumpContent);
  glUniform1f(m_bumpScale, material.bumpScale);
  glUniform1i(m_opacityInAlpha, material.opacityInAlpha);
  glUniform3fv(m_dataScales, 1, material.dataScales.data());
  for (NTextureSlot const slot : kTextureSlots) {
    if (!material.HasTexture(slot)) continue;
    glActiveTexture(GL_TEXTURE0 + slot);
    glBindTexture(GL_TEXTURE_2D, material.textures[slot]);
    glBindSampler(slot, material.samplers[slot]);
  }
}

}  // namespace corvanta::renderer
