#pragma once

#include "corvanta/renderer/pass/NPicture.h"

namespace corvanta::renderer {

/// Draws the opaque models, the nearest first, so that what they hide needn't be lit. Of two models
/// at one depth the first drawn is seen, if the depth function is GL_GREATER.
class NOpaquePass {
 public:
  /// Fails: as NProgram.
  NOpaquePass() : m_program(false) {}

  NSurfaceProgram const& GetProgram() const { return m_program; }
  void Draw(NPicture const& picture) const;

 private:
  NSurfaceProgram const m_program;
};

}  // namespace corvanta::renderer
