#pragma once

#include <array>

#include "corvanta/renderer/gl/NProgram.h"
#include "corvanta/renderer/gl/objects.h"
#include "corvanta/renderer/pass/NPicture.h"

namespace corvanta::renderer {

/// Darkens what is drawn where near surfaces hide the light from around, by the depths alone. Of 16
/// points about a pixel's, on a spiral of the golden angle, each at the direction v that is seen
/// there hides max(0, n . v - 0.05) of the light from there, times the share 1 - |z| / depthFalloff
/// of their distance z in depth; the rest of the light, to the power of the contrast, is a factor
/// of the colour. It has no noise.
class NOcclusionPass {
 public:
  /// Fails: as NProgram.
  NOcclusionPass();

  /// Units: the rectangle is in pixels from the lower left corner.
  /// Requires: `frame` is what is drawn into.
  void Draw(GLuint frame, std::array<GLint, 4> const& rectangle, NViewpoint const& viewpoint,
            NOcclusion const& occlusion);

 private:
  void CopyDepths(GLuint frame, std::array<GLint, 4> const& rectangle);

  NProgram m_program;
  NGlVertexArray m_noVertices;
  GLint const m_origin, m_size, m_projection, m_back, m_radius, m_falloff, m_contrast;
  NGlTexture m_depths;
  NGlFramebuffer m_depthFrame;
  std::array<GLint, 2> m_depthSize{};
};

}  // namespace corvanta::renderer
