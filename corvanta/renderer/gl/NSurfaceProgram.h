#pragma once

#include "corvanta/renderer/NEye.h"
#include "corvanta/renderer/NLamps.h"
#include "corvanta/renderer/NShade.h"
#include "corvanta/renderer/gl/NProgram.h"

namespace corvanta::renderer {

/// How light becomes the value of a pixel.
struct NExposure {
  float factor = 1.0f;
  float gamma = 1.0f;
  float white = 0.0f;  // what becomes white by tone mapping; 0 without it
};

/// The program that lights a surface, and its uniforms by what they belong to.
class NSurfaceProgram {
 public:
  /// `hasHoles` is for what may be clear in places.
  /// Fails: as NProgram.
  explicit NSurfaceProgram(bool hasHoles);

  /// Makes this what draws, through `eye`, by these lamps.
  void Begin(NEye const& eye, NLamps const& lamps, NExposure const& exposure) const;
  /// `sky` is what a surface reflects that has no surroundings of its own.
  void SetShade(NShade const& shade, NColor const& ambientLight, NLamps const& lamps,
                NSky const& sky) const;
  void SetPlace(VX_Math::Matrix const& global, VX_Math::Matrix const& normals) const;
  /// Draws the edges of triangles alone, or whole triangles.
  void SetWired(bool isWired) const;

 private:
  NProgram m_program;
  GLint const m_world, m_normalWorld, m_viewProjection, m_depthRange, m_eye;
  GLint const m_diffuse, m_ambient, m_specular, m_emissive, m_power, m_opacity;
  GLint const m_bounds, m_colorOperation, m_bumpKind, m_bumpScale, m_opacityInAlpha, m_wired;
  GLint const m_farCount, m_lampCount, m_shineCount, m_lampKind, m_lampColor, m_lampPlace,
      m_lampDirection, m_lampCone, m_lampRange, m_lampFade;
  GLint const m_mirror, m_mirrorFloor, m_mirrorBlur, m_skyKind, m_skyTurn;
  GLint const m_used, m_mirrorCount, m_gammaCount;
  GLint const m_exposure, m_gamma, m_white;
};

/// Gives the upper left 3 x 3 of a matrix to a uniform.
void SetTurn(GLint uniform, VX_Math::Matrix const& matrix);
/// Binds a picture of the surroundings to its unit.
void BindSky(NSky const& sky);

}  // namespace corvanta::renderer
