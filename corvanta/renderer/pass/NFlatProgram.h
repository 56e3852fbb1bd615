#pragma once

#include "corvanta/renderer/NViewpoint.h"
#include "corvanta/renderer/gl/NProgram.h"
#include "corvanta/renderer/gl/shaders.h"

namespace corvanta::renderer {

/// The program that gives all of an instance one colour, without light.
class NFlatProgram {
 public:
  /// Fails: as NProgram.
  NFlatProgram()
      : m_program(kFlatVertexShader, kFlatFragmentShader),
        m_viewProjection(m_program.GetUniform("viewProjection")),
        m_depthRange(m_program.GetUniform("depthRange")) {}

  /// Makes this the current program.
  void Begin(NViewpoint const& viewpoint) const {
    m_program.Use();
    VX_Math::Matrix const viewProjection = viewpoint.GetReversedDepthViewProjection();
    glUniformMatrix4fv(m_viewProjection, 1, GL_FALSE, viewProjection[0]);
    glUniform2fv(m_depthRange, 1, GetDepthRange().data());
  }

 private:
  NProgram m_program;
  GLint const m_viewProjection, m_depthRange;
};

}  // namespace corvanta::renderer
