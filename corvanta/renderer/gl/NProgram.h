#pragma once

#include <string>

#include "corvanta/renderer/gl/objects.h"

namespace corvanta::renderer {

/// A program of shaders on the graphics processor, linked while it lives.
/// Requires: its context is current whenever it is made, used or ends.
class NProgram {
 public:
  /// Fails: throws NRenderError with the driver's first line about a shader that it refuses.
  NProgram(std::string const& vertexShader, std::string const& fragmentShader);
  NProgram(NProgram const&) = delete;
  NProgram& operator=(NProgram const&) = delete;
  ~NProgram();

  void Use() const { glUseProgram(m_name); }
  /// Where the uniform `name` is set; -1, which is set without effect, if the shaders don't use it.
  GLint GetUniform(char const* name) const { return glGetUniformLocation(m_name, name); }

 private:
  void Attach(GLenum kind, std::string const& source) const;

  GLuint const m_name;
};

}  // namespace corvanta::renderer
