#pragma once

#include <array>

#include "corvanta/renderer/gl/NProgram.h"
#include "corvanta/renderer/gl/objects.h"

namespace corvanta::renderer {

/// Adds a glow around what is brighter than white: its light above white, spread by a Gaussian of a
/// fiftieth of the picture's height; and a star of that light along two diagonals, which decreases
/// as exp(-25 d), d in heights of the picture. The picture is the same at every size.
class NGlowPass {
 public:
  /// Fails: as NProgram.
  NGlowPass();

  /// `frame` has the light above white as the alpha of its pixels; see NSF_GLOW.
  /// Units: the rectangle is in pixels from the lower left corner.
  /// Requires: `frame` is what is drawn into.
  void Draw(GLuint frame, std::array<GLint, 4> const& rectangle, float glow, float star);

 private:
  struct Plane {
    NGlTexture texture;
    NGlFramebuffer frame;
    std::array<GLint, 2> size{};
  };

  static void Resize(Plane& plane, GLint width, GLint height);
  /// Draws `source` into the bound framebuffer.
  void Spread(Plane const& source, GLint fromAlpha, std::array<float, 2> const& step,
              float strength, GLint isRay = 0) const;
  void DrawGlow(std::array<float, 2> const& step);
  void DrawStar(std::array<float, 2> const& step, GLuint frame,
                std::array<GLint, 4> const& rectangle, float strength);
  void BeginSmall(Plane const& plane) const;
  void BeginFrame(GLuint frame, std::array<GLint, 4> const& rectangle) const;

  NProgram m_program;
  NGlVertexArray m_noVertices;
  GLint const m_fromAlpha, m_isRay, m_step, m_strength, m_origin, m_scale;
  Plane m_resolved, m_planes[2];
};

}  // namespace corvanta::renderer
