#pragma once

#include <GL/glcorearb.h>

#include <array>
#include <utility>

namespace corvanta::renderer {

/// The OpenGL functions of a context, under their own names.
struct NGl {
#define CORVANTA_GL(TYPE, NAME) TYPE NAME = nullptr;
#include "corvanta/renderer/gl_functions.def"
  PFNGLCLIPCONTROLPROC glClipControl = nullptr;  // of OpenGL 4.5; null where it is older
};

/// How a depth from 0 to 1 becomes that of the clip space: a factor, and a share of w.
inline std::array<float, 2> GetDepthRange(NGl const& gl) {
  if (gl.glClipControl != nullptr) return {1.0f, 0.0f};
  return {2.0f, -1.0f};
}

/// Owns an object of OpenGL: its number, made by `Generate` and given back by `Delete`.
/// Requires: the context outlives it.
template <auto Generate, auto Delete>
class NGlObject {
 public:
  explicit NGlObject(NGl const& gl) : m_gl(&gl) { (gl.*Generate)(1, &m_name); }
  NGlObject(NGlObject&& other) noexcept
      : m_gl(other.m_gl), m_name(std::exchange(other.m_name, 0u)) {}
  NGlObject& operator=(NGlObject&& other) noexcept {
    std::swap(m_gl, other.m_gl);
    std::swap(m_name, other.m_name);
    return *this;
  }
  ~NGlObject() {
    if (m_name != 0) (m_gl->*Delete)(1, &m_name);
  }

  GLuint Get() const { return m_name; }

 private:
  NGl const* m_gl;
  GLuint m_name = 0;
};

using NGlBuffer = NGlObject<&NGl::glGenBuffers, &NGl::glDeleteBuffers>;
using NGlFramebuffer = NGlObject<&NGl::glGenFramebuffers, &NGl::glDeleteFramebuffers>;
using NGlRenderbuffer = NGlObject<&NGl::glGenRenderbuffers, &NGl::glDeleteRenderbuffers>;
using NGlTexture = NGlObject<&NGl::glGenTextures, &NGl::glDeleteTextures>;
using NGlVertexArray = NGlObject<&NGl::glGenVertexArrays, &NGl::glDeleteVertexArrays>;

}  // namespace corvanta::renderer
