#pragma once

#include <epoxy/gl.h>

#include <array>
#include <vector>

namespace corvanta::renderer {

/// The state of a context that the renderer changes or relies on, as it was at construction: what
/// SetDrawingState and drawing change, Restore sets back.
class NGlState {
 public:
  /// Cost: some 130 queries.
  NGlState();

  void Restore() const;
  /// The state in which the renderer draws: OpenGL's initial one, but for the seamless cube maps,
  /// the clip range, the cleared depth and the blend function.
  static void SetDrawingState();

 private:
  struct StencilFace {
    GLint function, reference, valueMask, fail, depthFail, depthPass, writeMask;
  };
  struct Unit {
    GLint texture, cube, sampler;
  };

  std::array<GLint, 2> m_framebuffers;  // drawn to, read from
  GLint m_renderbuffer, m_program, m_vertexArray, m_activeTexture;
  std::vector<GLint> m_buffers;
  std::vector<Unit> m_units;
  std::vector<GLboolean> m_switches;
  std::vector<GLint> m_pixelStorage;
  std::vector<GLboolean> m_blends;                     // by draw buffer
  std::vector<std::array<GLboolean, 4>> m_colorMasks;  // by draw buffer
  std::array<GLint, 4> m_viewport, m_scissor;
  std::array<GLfloat, 4> m_clearColor;
  std::array<GLfloat, 2> m_depthRange, m_polygonOffset;
  GLfloat m_clearDepth, m_lineWidth, m_pointSize;
  GLint m_clearStencil, m_depthFunction, m_readClamp, m_culledFace, m_frontFace;
  GLboolean m_depthMask;
  std::array<StencilFace, 2> m_stencil;  // front, back
  std::array<GLint, 4> m_blendFunctions;
  std::array<GLint, 2> m_blendEquations, m_clipControl, m_polygonMode;
};

}  // namespace corvanta::renderer
