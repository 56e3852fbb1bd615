#pragma once

#include "corvanta/renderer/pass/NPicture.h"

namespace corvanta::renderer {

/// Blends the transparent models over what is drawn, the farthest first, so that each is seen
/// through the next. It writes no depth.
class NTransparentPass {
 public:
  /// Fails: as NProgram.
  NTransparentPass() : m_program(true) {}

  /// The program for surfaces that are transparent, maybe in part.
  NSurfaceProgram const& GetProgram() const { return m_program; }
  void Draw(NPicture const& picture) const;

 private:
  NSurfaceProgram const m_program;
};

}  // namespace corvanta::renderer
