#pragma once

#include <map>

#include "corvanta/renderer/gl/NProgram.h"
#include "corvanta/renderer/gl/shaders.h"
#include "corvanta/renderer/pass/NPicture.h"

namespace corvanta::renderer {

/// Draws what is behind all models: the picture of an environment that fills the view, or its
/// environment map. It writes no depth, and draws nothing where the environment has neither.
class NBackgroundPass {
 public:
  /// Fails: as NProgram.
  void Draw(NPicture const& picture, data::domain::environment::NEnvironmentNode const& environment,
            NTextures& textures);

 private:
  void Draw(NViewpoint const& viewpoint, NEnvironmentTexture const& texture,
            NExposure const& exposure);

  std::map<NBackgroundKey, NProgram> m_programs;
  NGlVertexArray m_noVertices;  // the shader makes them
};

}  // namespace corvanta::renderer
