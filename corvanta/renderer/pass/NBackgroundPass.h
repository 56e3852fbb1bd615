#pragma once

#include "corvanta/renderer/gl/NProgram.h"
#include "corvanta/renderer/pass/NPicture.h"

namespace corvanta::renderer {

/// Draws what is behind all models: the picture of an environment that fills the view, or its
/// environment map. It writes no depth, and draws nothing where the environment has neither.
class NBackgroundPass {
 public:
  /// Fails: as NProgram.
  NBackgroundPass();

  void Draw(NPicture const& picture, data::domain::environment::NEnvironmentNode const& environment,
            NTextures& textures) const;

 private:
  void Draw(NViewpoint const& viewpoint, NEnvironmentTexture const& texture,
            NExposure const& exposure) const;

  NProgram m_program;
  NGlVertexArray m_noVertices;  // the shader makes them
  GLint const m_clipToWorld, m_isPerspective, m_projection, m_rotation;
  GLint const m_exposure, m_gamma, m_white;
};

}  // namespace corvanta::renderer
