#include "corvanta/renderer/gl/NProgram.h"

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

NProgram::NProgram(std::string const& vertexShader, std::string const& fragmentShader)
    : m_name(glCreateProgram()) {
  try {
    Attach(GL_VERTEX_SHADER, vertexShader);
    Attach(GL_FRAGMENT_SHADER, fragmentShader);
    glLinkProgram(m_name);
    GLint isLinked = GL_FALSE;
    glGetProgramiv(m_name, GL_LINK_STATUS, &isLinked);
    if (isLinked != GL_TRUE) {
      Log log{};
      glGetProgramInfoLog(m_name, static_cast<GLsizei>(log.size()), nullptr, log.data());
      Refuse(log);
    }
  } catch (...) {
    glDeleteProgram(m_name);
    throw;
  }
}

NProgram::~NProgram() { glDeleteProgram(m_name); }

void NProgram::Attach(GLenum kind, std::string const& source) const {
  GLuint const shader = glCreateShader(kind);
  char const* const text = source.c_str();
  glShaderSource(shader, 1, &text, nullptr);
  glCompileShader(shader);
  GLint isCompiled = GL_FALSE;
  glGetShaderiv(shader, GL_COMPILE_STATUS, &isCompiled);
  Log log{};
  glGetShaderInfoLog(shader, static_cast<GLsizei>(log.size()), nullptr, log.data());
  glAttachShader(m_name, shader);
  // It goes with the program.
  glDeleteShader(shader);
  if (isCompiled != GL_TRUE) Refuse(log);
}

}  // namespace corvanta::renderer
