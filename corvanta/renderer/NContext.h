#pragma once

#include <memory>
#include <string>

#include "corvanta/export.h"
#include "corvanta/renderer/NGl.h"

namespace corvanta::renderer {

/// An OpenGL 3.3 core context without a window, on EGL's surfaceless platform. It is current on the
/// thread that made it. EGL is looked for when the context is made, so that a machine without it
/// runs all that draws nothing.
class CORVANTA_API NContext {
 public:
  /// Fails: throws NRenderError, which says what the machine lacks.
  NContext();
  NContext(NContext const&) = delete;
  NContext& operator=(NContext const&) = delete;
  ~NContext();

  NGl const& GetGl() const;
  /// Who draws, such as "llvmpipe".
  std::string GetRendererName() const;

 private:
  struct Block;

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::renderer
