#pragma once

#include "corvanta/renderer/NViewpoint.h"
#include "corvanta/renderer/gl/NProgram.h"
#include "corvanta/renderer/scene/NLamps.h"
#include "corvanta/renderer/scene/NMaterialParameters.h"

namespace corvanta::renderer {

/// How light becomes the value of a pixel.
struct NExposure {
  float factor = 1.0f;
  float gamma = 1.0f;
  float white = 0.0f;    // the light that tone mapping makes white; 0 without tone mapping
  float diffuse = 1.0f;  // a factor of what matt surfaces throw back of the lamps' light
};

/// A program that lights surfaces. Begin sets what a picture has in common, SetMaterial what the
/// instances of a draw call have.
class NSurfaceProgram {
 public:
  /// Fails: as NProgram.
  explicit NSurfaceProgram(NSurfaceKey const& key);

  /// Makes this the current program.
  void Begin(NViewpoint const& viewpoint, NLamps const& lamps, NExposure const& exposure) const;
  /// Makes this the current program, too. `environment` is what the material reflects.
  /// Units: `fleckUnit` is the side of a fleck of size 1, in scene units.
  void SetMaterial(NMaterialParameters const& material, NColor const& ambientLight, float fleckUnit,
                   NEnvironmentTexture const& environment) const;

 private:
  void SetFinish(NMaterialParameters const& material, float fleckUnit) const;
  void SetTextures(NMaterialParameters const& material) const;

  NProgram m_program;
  unsigned const m_features;
  GLint const m_viewProjection, m_depthRange, m_viewpoint;
  GLint const m_diffuse, m_ambient, m_specular, m_emissive, m_power, m_opacity, m_cutOff;
  GLint const m_rough, m_coatReflectance, m_fleckColor, m_fleckSize, m_fleckPerturbation;
  GLint const m_bounds, m_colorOperation, m_bumpContent, m_bumpScale, m_opacityInAlpha,
      m_dataScales;
  GLint const m_lampCount, m_lampType, m_lampColor, m_lampPosition, m_lampDirection, m_lampCone,
      m_lampRange, m_lampAttenuation;
  GLint const m_reflection, m_mirror, m_fresnel, m_reflectionLod, m_environmentContrast,
      m_irradiance, m_harmonics, m_environmentProjection, m_environmentRotation;
  GLint const m_exposure, m_gamma, m_white, m_diffuseWeight;
};

/// Sets a uniform of the current program to the upper left 3 x 3 of a matrix.
void SetMatrix3(GLint uniform, VX_Math::Matrix const& matrix);
/// Binds the picture of an environment to its unit.
void BindEnvironmentTexture(NEnvironmentTexture const& environment);
/// Makes `program` current, and its samplers "environmentCube" and "environmentImage" read from
/// their units.
void SetEnvironmentUnits(NProgram const& program);

}  // namespace corvanta::renderer
