#pragma once

#include "corvanta/renderer/pass/NFlatProgram.h"
#include "corvanta/renderer/pass/NInstances.h"
#include "corvanta/renderer/pass/NPicture.h"

namespace corvanta::renderer {

/// The bit of the stencil that is set where the floor is seen; below it is one for each lamp.
inline constexpr unsigned kFloorStencilBit = 1u << kShadowCount;

/// Darkens the floor by the models, flattened onto it along the light of each lamp that makes
/// shadows. The lamp's bit of the stencil keeps two models from darkening one pixel twice.
/// Requires: NFloorPass drew the floor just before.
class NShadowPass {
 public:
  /// Requires: `program` outlives this.
  explicit NShadowPass(NFlatProgram const& program) : m_program(program) {}

  /// Units: `height` is that of the floor in scene units.
  void Draw(NInstances& instances, NPicture const& picture, float height) const;

 private:
  void DrawModels(NInstances& instances, NPicture const& picture, unsigned lamp,
                  float height) const;

  NFlatProgram const& m_program;
};

}  // namespace corvanta::renderer
