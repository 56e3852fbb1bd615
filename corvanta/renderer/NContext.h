#pragma once

#include <memory>
#include <string>

#include "corvanta/export.h"

namespace corvanta::renderer {

/// Where a context comes from.
enum NContextSource {
  NCS_SURFACELESS,  ///< made for the renderer, without a window, on EGL's surfaceless platform
  NCS_CURRENT,      ///< the host's own, which is current on this thread
};

/// The OpenGL context, 3.3 core or later, in which everything of this library is drawn.
///
/// A context of the renderer's own is made current by each call that needs it. If another context
/// of EGL was current, that one is current again when the call returns; otherwise the own one stays
/// current until this ends.
///
/// A context of the host is left as it was found. Each call saves, sets as it needs and restores:
/// the bindings of framebuffers, renderbuffer, program, vertex array, array and pixel buffers; on
/// texture units 0 to 6 the two-dimensional and cube textures and the samplers; viewport, scissor,
/// clear values, colour masks, depth, stencil and blend state, polygon mode and offset, clip
/// control, pixel storage, the clamping of what is read, and the switches of `glEnable` that
/// change what is drawn. Errors that `glGetError` would have given are lost.
///
/// EGL is looked for when a context is made, so that a program on a machine without it runs as long
/// as it draws nothing.
class CORVANTA_API NContext {
 public:
  /// Requires: of NCS_CURRENT, that the host's context is current in every call of this library
  /// that draws or ends what was made for it, that it outlives this, and that no transform
  /// feedback, conditional rendering or program pipeline is active then.
  /// Fails: throws NRenderError, which says what the machine lacks; for NCS_CURRENT also if no
  /// context is current, or it is older than OpenGL 3.3.
  explicit NContext(NContextSource source = NCS_SURFACELESS);
  NContext(NContext const&) = delete;
  NContext& operator=(NContext const&) = delete;
  /// Requires: what was made for it has ended.
  ~NContext();

  /// The driver that draws, such as "llvmpipe".
  std::string GetRendererName() const;

 private:
  friend class NContextScope;
  struct Block;

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::renderer
