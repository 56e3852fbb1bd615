#pragma once

#include <array>

#include "corvanta/renderer/NViewpoint.h"
#include "corvanta/renderer/gl/NProgram.h"
#include "corvanta/renderer/gl/shaders.h"

namespace corvanta::renderer {

/// The program that gives all of a model one colour, without light. Its uniforms are those of the
/// last calls until it draws.
class NFlatProgram {
 public:
  /// Fails: as NProgram.
  NFlatProgram()
      : m_program(kSurfaceVertexShader, kFlatFragmentShader),
        m_viewProjection(m_program.GetUniform("viewProjection")),
        m_depthRange(m_program.GetUniform("depthRange")),
        m_world(m_program.GetUniform("world")),
        m_color(m_program.GetUniform("color")) {}

  void Begin(NViewpoint const& viewpoint) const {
    m_program.Use();
    VX_Math::Matrix const viewProjection = viewpoint.GetReversedDepthViewProjection();
    glUniformMatrix4fv(m_viewProjection, 1, GL_FALSE, viewProjection[0]);
    glUniform2fv(m_depthRange, 1, GetDepthRange().data());
  }
  void SetColor(std::array<float, 4> const& color) const { glUniform4fv(m_color, 1, color.data()); }
  void SetTransform(VX_Math::Matrix const& global) const {
    glUniformMatrix4fv(m_world, 1, GL_FALSE, global[0]);
  }

 private:
  NProgram m_program;
  GLint const m_viewProjection, m_depthRange, m_world, m_color;
};

}  // namespace corvanta::renderer
