#include "corvanta/renderer/NProgram.h"

#include <array>

#include "corvanta/renderer/NRenderError.h"

namespace corvanta::renderer {

namespace {

using Log = std::array<char, 512>;

[[noreturn]] void Refuse(Log const& log) {
  std::string const text = log.data();
  throw NRenderError("the driver refuses a shader: " + text.substr(0, text.find('\n')));
}

}  // namespace

NProgram::NProgram(NGl const& gl, std::string const& vertexShader,
                   std::string const& fragmentShader)
    : m_gl(gl), m_name(gl.glCreateProgram()) {
  try {
    Attach(GL_VERTEX_SHADER, vertexShader);
    Attach(GL_FRAGMENT_SHADER, fragmentShader);
    gl.glLinkProgram(m_name);
    GLint isLinked = GL_FALSE;
    gl.glGetProgramiv(m_name, GL_LINK_STATUS, &isLinked);
    if (isLinked != GL_TRUE) {
      Log log{};
      gl.glGetProgramInfoLog(m_name, static_cast<GLsizei>(log.size()), nullptr, log.data());
      Refuse(log);
    }
  } catch (...) {
    gl.glDeleteProgram(m_name);
    throw;
  }
}

NProgram::~NProgram() { m_gl.glDeleteProgram(m_name); }

void NProgram::Attach(GLenum kind, std::string const& source) const {
  GLuint const shader = m_gl.glCreateShader(kind);
  char const* const text = source.c_str();
  m_gl.glShaderSource(shader, 1, &text, nullptr);
  m_gl.glCompileShader(shader);
  GLint isCompiled = GL_FALSE;
  m_gl.glGetShaderiv(shader, GL_COMPILE_STATUS, &isCompiled);
  Log log{};
  m_gl.glGetShaderInfoLog(shader, static_cast<GLsizei>(log.size()), nullptr, log.data());
  m_gl.glAttachShader(m_name, shader);
  // It goes with the program.
  m_gl.glDeleteShader(shader);
  if (isCompiled != GL_TRUE) Refuse(log);
}

}  // namespace corvanta::renderer
