#include "corvanta/renderer/NContext.h"

#include <dlfcn.h>
#include <epoxy/egl.h>
#include <epoxy/gl.h>

#include <optional>

#include "corvanta/renderer/NRenderError.h"
#include "corvanta/renderer/gl/NContextScope.h"
#include "corvanta/renderer/gl/NGlState.h"

namespace corvanta::renderer {

namespace {

constexpr EGLint kConfig[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE,
                              EGL_OPENGL_BIT, EGL_NONE};
constexpr EGLint kContext[] = {EGL_CONTEXT_MAJOR_VERSION,
                               3,
                               EGL_CONTEXT_MINOR_VERSION,
                               3,
                               EGL_CONTEXT_OPENGL_PROFILE_MASK,
                               EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                               EGL_NONE};

/// A context of EGL that is current, with all that is needed to make it current again.
struct Current {
  static Current Get() {
    return {eglGetCurrentDisplay(), eglGetCurrentSurface(EGL_DRAW), eglGetCurrentSurface(EGL_READ),
            eglGetCurrentContext()};
  }

  EGLDisplay display;
  EGLSurface draw, read;
  EGLContext context;
};

/// The display that draws without a window. It is never terminated: drivers keep threads and
/// handlers of theirs in the process, and what they never give back is still in their hands.
EGLDisplay GetSurfacelessDisplay() {
  // A function of a library that isn't there would end the process.
  if (!epoxy_has_egl()) throw NRenderError("there is no EGL on this machine (libEGL.so.1)");
  EGLDisplay display = EGL_NO_DISPLAY;
  if (epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_EXT_platform_base") &&
      epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_MESA_platform_surfaceless")) {
    display = eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
  }
  if (display == EGL_NO_DISPLAY || eglInitialize(display, nullptr, nullptr) != EGL_TRUE) {
    throw NRenderError("EGL has no driver that draws without a window");
  }
  return display;
}

/// Whether a context of GLX is current. Its library is asked only if the host has loaded it.
bool IsGlxCurrent() {
  for (char const* const name : {"libGLX.so.0", "libGL.so.1"}) {
    void* const library = dlopen(name, RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr) continue;
    auto const get = reinterpret_cast<void* (*)()>(dlsym(library, "glXGetCurrentContext"));
    bool const isCurrent = get != nullptr && get() != nullptr;
    dlclose(library);
    if (isCurrent) return true;
  }
  return false;
}

}  // namespace

struct NContext::Block {
  explicit Block(NContextSource from) : source(from) {}
  ~Block() {
    if (context == EGL_NO_CONTEXT) return;
    if (eglGetCurrentContext() == context) {
      eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }
    eglDestroyContext(display, context);
  }

  NContextSource const source;
  EGLDisplay display = EGL_NO_DISPLAY;
  EGLContext context = EGL_NO_CONTEXT;  // the renderer's own
  int depth = 0;                        // of scopes
  std::optional<Current> before;        // of EGL, where another context was current
  std::optional<NGlState> state;        // of a host's context
};

NContext::NContext(NContextSource source) : m_block(new Block(source)) {
  Block& block = *m_block;
  if (source == NCS_CURRENT) {
    bool const isEgl = epoxy_has_egl() && eglGetCurrentContext() != EGL_NO_CONTEXT;
    if (!isEgl && !IsGlxCurrent()) throw NRenderError("no OpenGL context is current");
    if (!epoxy_is_desktop_gl() || epoxy_gl_version() < 33) {
      throw NRenderError("the current context is older than OpenGL 3.3");
    }
    return;
  }
  block.display = GetSurfacelessDisplay();
  EGLConfig config = nullptr;
  EGLint count = 0;
  if (eglChooseConfig(block.display, kConfig, &config, 1, &count) == EGL_FALSE || count == 0) {
    config = EGL_NO_CONFIG_KHR;
  }
  EGLenum const api = eglQueryAPI();
  if (eglBindAPI(EGL_OPENGL_API) == EGL_FALSE) throw NRenderError("EGL has no OpenGL here");
  block.context = eglCreateContext(block.display, config, EGL_NO_CONTEXT, kContext);
  eglBindAPI(api);
  if (block.context == EGL_NO_CONTEXT) throw NRenderError("the driver has no OpenGL 3.3");
  NContextScope const scope(*this);
  NGlState::SetDrawingState();
}

NContext::~NContext() = default;

std::string NContext::GetRendererName() const {
  NContextScope const scope(*this);
  auto const* const name = glGetString(GL_RENDERER);
  return name == nullptr ? std::string() : reinterpret_cast<char const*>(name);
}

NContextScope::NContextScope(NContext const& context) : m_block(*context.m_block) {
  if (m_block.depth == 0) {
    if (m_block.source == NCS_CURRENT) {
      m_block.state.emplace();
      NGlState::SetDrawingState();
      while (glGetError() != GL_NO_ERROR) continue;
    } else if (Current const current = Current::Get(); current.context != m_block.context) {
      if (eglMakeCurrent(m_block.display, EGL_NO_SURFACE, EGL_NO_SURFACE, m_block.context) ==
          EGL_FALSE) {
        throw NRenderError("the context of the renderer can't be made current on this thread");
      }
      if (current.context != EGL_NO_CONTEXT) m_block.before = current;
    }
  }
  ++m_block.depth;
}

NContextScope::~NContextScope() {
  if (--m_block.depth != 0) return;
  if (m_block.state) m_block.state->Restore();
  m_block.state.reset();
  if (auto const& before = m_block.before) {
    eglMakeCurrent(before->display, before->draw, before->read, before->context);
  }
  m_block.before.reset();
}

}  // namespace corvanta::renderer
