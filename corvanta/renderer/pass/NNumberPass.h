#pragma once

#include "corvanta/renderer/pass/NFlatProgram.h"
#include "corvanta/renderer/pass/NInstances.h"
#include "corvanta/renderer/scene/NResolvedScene.h"

namespace corvanta::renderer {

/// Gives each pixel the number of the model that is seen there as its colour, red the highest byte:
/// 1 for the first of the scene's items.
class NNumberPass {
 public:
  /// Requires: `program` outlives this.
  explicit NNumberPass(NFlatProgram const& program) : m_program(program) {}

  void Draw(NInstances& instances, NResolvedScene const& scene, NViewpoint const& viewpoint) const;

 private:
  NFlatProgram const& m_program;
};

}  // namespace corvanta::renderer
