#include "corvanta/renderer/NContext.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <dlfcn.h>

#include <cstdlib>

#include "corvanta/renderer/NRenderError.h"

namespace corvanta::renderer {

namespace {

/// The EGL library and the functions of it that are called.
struct Egl {
  Egl() {
    // What EGL has to say comes out of this program as one line.
    setenv("EGL_LOG_LEVEL", "fatal", 0);
    setenv("LIBGL_DEBUG", "quiet", 0);
    library = dlopen("libEGL.so.1", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) throw NRenderError("there is no EGL on this machine (libEGL.so.1)");
    Find("eglGetProcAddress", getProcAddress);
    Find("eglGetPlatformDisplay", getPlatformDisplay);
    Find("eglInitialize", initialize);
    Find("eglBindAPI", bindApi);
    Find("eglChooseConfig", chooseConfig);
    Find("eglCreateContext", createContext);
    Find("eglDestroyContext", destroyContext);
    Find("eglMakeCurrent", makeCurrent);
  }

  // The library and its display stay: drivers keep threads and handlers of theirs in the process,
  // and what they never give back is still in their hands.
  template <class Function>
  void Find(char const* name, Function& function) const {
    function = reinterpret_cast<Function>(dlsym(library, name));
    if (function == nullptr) {
      throw NRenderError(std::string("EGL is too old here, it has no ") + name);
    }
  }

  void* library = nullptr;
  PFNEGLGETPROCADDRESSPROC getProcAddress = nullptr;
  PFNEGLGETPLATFORMDISPLAYPROC getPlatformDisplay = nullptr;
  PFNEGLINITIALIZEPROC initialize = nullptr;
  PFNEGLBINDAPIPROC bindApi = nullptr;
  PFNEGLCHOOSECONFIGPROC chooseConfig = nullptr;
  PFNEGLCREATECONTEXTPROC createContext = nullptr;
  PFNEGLDESTROYCONTEXTPROC destroyContext = nullptr;
  PFNEGLMAKECURRENTPROC makeCurrent = nullptr;
};

constexpr EGLint kConfig[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE,
                              EGL_OPENGL_BIT, EGL_NONE};
constexpr EGLint kContext[] = {EGL_CONTEXT_MAJOR_VERSION,
                               3,
                               EGL_CONTEXT_MINOR_VERSION,
                               3,
                               EGL_CONTEXT_OPENGL_PROFILE_MASK,
                               EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                               EGL_NONE};

}  // namespace

struct NContext::Block {
  ~Block() {
    if (context != EGL_NO_CONTEXT) {
      egl.makeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
      egl.destroyContext(display, context);
    }
  }

  Egl egl;
  EGLDisplay display = EGL_NO_DISPLAY;
  EGLContext context = EGL_NO_CONTEXT;
  NGl gl;
};

NContext::NContext() : m_block(new Block) {
  Block& block = *m_block;
  Egl const& egl = block.egl;
  block.display =
      egl.getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
  bool const isInitialized = block.display != EGL_NO_DISPLAY &&
                             egl.initialize(block.display, nullptr, nullptr) == EGL_TRUE;
  if (!isInitialized) throw NRenderError("EGL has no driver that draws without a window");
  if (egl.bindApi(EGL_OPENGL_API) == EGL_FALSE) throw NRenderError("EGL has no OpenGL here");
  EGLConfig config = nullptr;
  EGLint count = 0;
  if (egl.chooseConfig(block.display, kConfig, &config, 1, &count) == EGL_FALSE || count == 0) {
    config = EGL_NO_CONFIG_KHR;
  }
  block.context = egl.createContext(block.display, config, EGL_NO_CONTEXT, kContext);
  if (block.context == EGL_NO_CONTEXT ||
      egl.makeCurrent(block.display, EGL_NO_SURFACE, EGL_NO_SURFACE, block.context) == EGL_FALSE) {
    throw NRenderError("the driver has no OpenGL 3.3");
  }
  auto const find = [&egl](char const* name, auto& function) {
    function =
        reinterpret_cast<std::remove_reference_t<decltype(function)>>(egl.getProcAddress(name));
    if (function == nullptr) throw NRenderError(std::string("the driver has no ") + name);
  };
#define CORVANTA_GL(TYPE, NAME) find(#NAME, block.gl.NAME);
#include "corvanta/renderer/gl_functions.def"
  GLint major = 0, minor = 0;
  block.gl.glGetIntegerv(GL_MAJOR_VERSION, &major);
  block.gl.glGetIntegerv(GL_MINOR_VERSION, &minor);
  if (10 * major + minor >= 45) find("glClipControl", block.gl.glClipControl);
}

NContext::~NContext() = default;

NGl const& NContext::GetGl() const { return m_block->gl; }

std::string NContext::GetRendererName() const {
  auto const* const name = m_block->gl.glGetString(GL_RENDERER);
  return name == nullptr ? std::string() : reinterpret_cast<char const*>(name);
}

}  // namespace corvanta::renderer
