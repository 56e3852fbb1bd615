#pragma once

#include <epoxy/gl.h>

#include <array>
#include <utility>

namespace corvanta::renderer {

/// Whether depths can be clipped at 0 and 1, as from OpenGL 4.5 on.
/// Requires: a context is current.
inline bool HasClipControl() { return epoxy_gl_version() >= 45; }

/// Whether lines can be wider than a pixel.
/// Requires: as HasClipControl.
inline bool AreLinesWide() {
  GLint flags = 0;
  glGetIntegerv(GL_CONTEXT_FLAGS, &flags);
  return (flags & GL_CONTEXT_FLAG_FORWARD_COMPATIBLE_BIT) == 0;
}

/// How a depth from 0 to 1 becomes that of the clip space: a factor, and a share of w.
/// Requires: as HasClipControl.
inline std::array<float, 2> GetDepthRange() {
  if (HasClipControl()) return {1.0f, 0.0f};
  return {2.0f, -1.0f};
}

/// Owns an object of OpenGL: its name, which `Generate` makes and `Delete` gives back. It is empty
/// only after a move.
/// Requires: its context is current whenever it is made or ends.
template <auto& Generate, auto& Delete>
class NGlObject {
 public:
  NGlObject() { Generate(1, &m_name); }
  NGlObject(NGlObject&& other) noexcept : m_name(std::exchange(other.m_name, 0u)) {}
  NGlObject& operator=(NGlObject&& other) noexcept {
    std::swap(m_name, other.m_name);
    return *this;
  }
  ~NGlObject() {
    if (m_name != 0) Delete(1, &m_name);
  }

  GLuint Get() const { return m_name; }

 private:
  GLuint m_name = 0;
};

using NGlBuffer = NGlObject<glGenBuffers, glDeleteBuffers>;
using NGlFramebuffer = NGlObject<glGenFramebuffers, glDeleteFramebuffers>;
using NGlRenderbuffer = NGlObject<glGenRenderbuffers, glDeleteRenderbuffers>;
using NGlSampler = NGlObject<glGenSamplers, glDeleteSamplers>;
using NGlTexture = NGlObject<glGenTextures, glDeleteTextures>;
using NGlVertexArray = NGlObject<glGenVertexArrays, glDeleteVertexArrays>;

}  // namespace corvanta::renderer
