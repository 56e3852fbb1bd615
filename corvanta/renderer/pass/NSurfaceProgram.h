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
  float white = 0.0f;  // the light that tone mapping makes white; 0 without tone mapping
};

/// The program that lights a surface. Begin sets what a picture has in common, SetMaterial and
/// SetTransform what a model has; a draw call needs all three before it.
class NSurfaceProgram {
 public:
  /// `hasAlphaTest` is for surfaces that are transparent, maybe in part.
  /// Fails: as NProgram.
  explicit NSurfaceProgram(bool hasAlphaTest);

  /// Makes this the current program.
  void Begin(NViewpoint const& viewpoint, NLamps const& lamps, NExposure const& exposure) const;
  /// `environment` is what a material without an environment of its own reflects.
  void SetMaterial(NMaterialParameters const& material, NColor const& ambientLight,
                   NLamps const& lamps, NEnvironmentTexture const& environment) const;
  /// `normals` is the inverse of `global`, transposed.
  void SetTransform(VX_Math::Matrix const& global, VX_Math::Matrix const& normals) const;
  /// Makes draw calls draw the edges of triangles alone, or whole triangles.
  void SetWireframe(bool isWireframe) const;

 private:
  void SetTextures(NMaterialParameters const& material) const;

  NProgram m_program;
  GLint const m_world, m_normalWorld, m_viewProjection, m_depthRange, m_viewpoint;
  GLint const m_diffuse, m_ambient, m_specular, m_emissive, m_power, m_opacity;
  GLint const m_bounds, m_colorOperation, m_bumpContent, m_bumpScale, m_opacityInAlpha, m_wireframe;
  GLint const m_directionalCount, m_lampCount, m_specularCount, m_lampType, m_lampColor,
      m_lampPosition, m_lampDirection, m_lampCone, m_lampRange, m_lampAttenuation;
  GLint const m_reflection, m_normalReflectance, m_reflectionLod, m_environmentProjection,
      m_environmentRotation;
  GLint const m_used, m_reflectionCount, m_gammaCount;
  GLint const m_exposure, m_gamma, m_white;
};

/// Sets a uniform of the current program to the upper left 3 x 3 of a matrix.
void SetMatrix3(GLint uniform, VX_Math::Matrix const& matrix);
/// Binds the picture of an environment to its unit.
void BindEnvironmentTexture(NEnvironmentTexture const& environment);
/// Makes `program` current, and its samplers "environmentCube" and "environmentImage" read from
/// their units.
void SetEnvironmentUnits(NProgram const& program);

}  // namespace corvanta::renderer
