#pragma once

#include "corvanta/renderer/NContext.h"

namespace corvanta::renderer {

/// While it lives, a context is current and in the state that the renderer draws in; see NContext
/// for what its end restores. Every public function that touches OpenGL begins with one; one within
/// another of the same context does nothing.
class NContextScope {
 public:
  /// Fails: throws NRenderError if the context can't be made current, as when it is current on
  /// another thread.
  explicit NContextScope(NContext const& context);
  NContextScope(NContextScope const&) = delete;
  NContextScope& operator=(NContextScope const&) = delete;
  ~NContextScope();

 private:
  NContext::Block& m_block;
};

}  // namespace corvanta::renderer
