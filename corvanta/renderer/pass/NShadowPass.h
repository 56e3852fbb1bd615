#pragma once

#include "corvanta/renderer/pass/NFlatProgram.h"
#include "corvanta/renderer/pass/NInstances.h"
#include "corvanta/renderer/pass/NPicture.h"

namespace corvanta::renderer {

/// The bit of the stencil that is set where the floor is seen; below it is one for each lamp.
inline constexpr unsigned kFloorStencilBit = 1u << kShadowCount;

/// Darkens the floor by the models, flattened onto it along the light of each lamp that makes
/// shadows. The lamp's bit of the stencil keeps two models from darkening one pixel twice. A soft
/// shadow is that of several directions, which spread over a disc of 0.03 times its softness about
/// the lamp's; each lets the same share of the light through, and all of them what a sharp one
/// does.
/// Requires: NFloorPass drew the floor just before.
class NShadowPass {
 public:
  /// Requires: `program` outlives this.
  explicit NShadowPass(NFlatProgram const& program) : m_program(program) {}

  /// Units: `height` is that of the floor in scene units.
  void Draw(NInstances& instances, NPicture const& picture, float height) const;

 private:
  void DrawModels(NInstances& instances, NPicture const& picture, VX_Math::Matrix const& flat,
                  float darkness, unsigned directions) const;

  NFlatProgram const& m_program;
};

}  // namespace corvanta::renderer
