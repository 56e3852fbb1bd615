#include <epoxy/egl.h>
#include <epoxy/gl.h>

#include "tests/render/world.h"

namespace corvanta::render_tests {
namespace {

/// A context of OpenGL 3.3 or later as a host makes it, current while it lives.
class HostContext {
 public:
  HostContext() {
    m_display =
        eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    eglInitialize(m_display, nullptr, nullptr);
    eglBindAPI(EGL_OPENGL_API);
    EGLint const attributes[] = {EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 3,
                                 EGL_NONE};
    m_context = eglCreateContext(m_display, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, attributes);
    eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, m_context);
  }
  ~HostContext() {
    eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(m_display, m_context);
  }

  EGLContext Get() const { return m_context; }

 private:
  EGLDisplay m_display;
  EGLContext m_context;
};

class ContextTest : public World {
 protected:
  ContextTest() {
    // Something of each pass: a background, an opaque and a transparent model.
    auto const environment = environments->CreateNode();
    environment->SetColorB(0.5);
    environment->SetAmbientLightR(0.8);
    m_scene->SetEnvironment(environment);
    AddBall(*m_root, -1, 0, 0);
    auto const glass = materials->CreateNode();
    glass->SetTransparency(0.5);
    AddBall(*m_root, 1, 0.5, 0)->SetMaterial(glass);
    AddBall(*m_root, 0, -2, 0)->SetIsWiredFlag(true);
  }

  static bool AreEqual(renderer::NPixels const& a, renderer::NPixels const& b) {
    return std::memcmp(a.GetRow(0), b.GetRow(0), std::size_t{3} * kWidth * kHeight) == 0;
  }

  /// Replaces the renderer by one in the context that is current.
  void UseCurrentContext() {
    m_renderer.reset();
    m_context.reset();
    m_context = std::make_unique<renderer::NContext>(renderer::NCS_CURRENT);
    m_renderer = std::make_unique<renderer::NRenderer>(*m_context, *events);
  }
};

// OpenGL promises so many.
constexpr GLenum kClipDistanceCount = 8;

/// Sets what would spoil a picture, each to another value than OpenGL's initial one.
void SetUnusualState() {
  for (GLenum const name :
       {GL_CULL_FACE, GL_STENCIL_TEST, GL_SCISSOR_TEST, GL_COLOR_LOGIC_OP, GL_RASTERIZER_DISCARD,
        GL_PRIMITIVE_RESTART, GL_POLYGON_OFFSET_FILL, GL_DEPTH_CLAMP, GL_FRAMEBUFFER_SRGB}) {
    glEnable(name);
  }
  for (GLenum i = 0; i != kClipDistanceCount; ++i) glEnable(GL_CLIP_DISTANCE0 + i);
  glEnablei(GL_BLEND, 1);
  glColorMaski(0, GL_FALSE, GL_TRUE, GL_FALSE, GL_FALSE);
  glCullFace(GL_FRONT_AND_BACK);
  glDepthMask(GL_FALSE);
  glDepthFunc(GL_NEVER);
  glDepthRange(0.25, 0.5);
  glClearDepth(0.75);
  glClearStencil(9);
  glClearColor(0.1f, 0.2f, 0.3f, 0.4f);
  glViewport(1, 2, 3, 4);
  glScissor(5, 6, 7, 8);
  glPolygonMode(GL_FRONT_AND_BACK, GL_POINT);
  glPolygonOffset(3.0f, 4.0f);
  glBlendFuncSeparate(GL_ZERO, GL_ONE, GL_DST_COLOR, GL_SRC_ALPHA);
  glBlendEquationSeparate(GL_MAX, GL_MIN);
  glStencilFuncSeparate(GL_BACK, GL_LESS, 3, 0x0F);
  glStencilOpSeparate(GL_FRONT, GL_INCR, GL_DECR, GL_INVERT);
  glStencilMaskSeparate(GL_BACK, 0x70);
  glPixelStorei(GL_UNPACK_ROW_LENGTH, 5);
  glPixelStorei(GL_PACK_SKIP_PIXELS, 2);
  glPixelStorei(GL_PACK_ALIGNMENT, 8);
  glClampColor(GL_CLAMP_READ_COLOR, GL_FALSE);
  if (epoxy_gl_version() >= 45) glClipControl(GL_UPPER_LEFT, GL_NEGATIVE_ONE_TO_ONE);
  GLuint names[8];
  glGenBuffers(3, names);
  glBindBuffer(GL_ARRAY_BUFFER, names[0]);
  glBindBuffer(GL_PIXEL_PACK_BUFFER, names[1]);
  glBindBuffer(GL_PIXEL_UNPACK_BUFFER, names[2]);
  glGenVertexArrays(1, names);
  glBindVertexArray(names[0]);
  glGenRenderbuffers(1, names);
  glBindRenderbuffer(GL_RENDERBUFFER, names[0]);
  glGenFramebuffers(2, names);
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, names[0]);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, names[1]);
  glActiveTexture(GL_TEXTURE0 + 3);
  glGenTextures(2, names);
  glBindTexture(GL_TEXTURE_2D, names[0]);
  glBindTexture(GL_TEXTURE_CUBE_MAP, names[1]);
  glGenSamplers(1, names);
  glBindSampler(0, names[0]);
  glUseProgram(0);
}

/// What `glGet` and `glIsEnabled` say of it, by the name asked for.
std::map<GLenum, std::vector<double>> GetState() {
  std::map<GLenum, std::vector<double>> state;
  for (GLenum const name :
       {GL_CULL_FACE, GL_STENCIL_TEST, GL_SCISSOR_TEST, GL_COLOR_LOGIC_OP, GL_RASTERIZER_DISCARD,
        GL_PRIMITIVE_RESTART, GL_POLYGON_OFFSET_FILL, GL_DEPTH_CLAMP, GL_FRAMEBUFFER_SRGB,
        GL_DEPTH_TEST, GL_TEXTURE_CUBE_MAP_SEAMLESS}) {
    state[name] = {static_cast<double>(glIsEnabled(name))};
  }
  for (GLenum i = 0; i != kClipDistanceCount; ++i) {
    state[GL_CLIP_DISTANCE0 + i] = {static_cast<double>(glIsEnabled(GL_CLIP_DISTANCE0 + i))};
  }
  // clang-format off
  for (GLenum const name : {
      GL_DEPTH_WRITEMASK, GL_DEPTH_FUNC, GL_DEPTH_RANGE, GL_DEPTH_CLEAR_VALUE,
      GL_STENCIL_CLEAR_VALUE, GL_COLOR_CLEAR_VALUE, GL_VIEWPORT, GL_SCISSOR_BOX, GL_POLYGON_MODE,
      GL_POLYGON_OFFSET_FACTOR, GL_POLYGON_OFFSET_UNITS, GL_BLEND_SRC_RGB, GL_BLEND_DST_RGB,
      GL_BLEND_SRC_ALPHA, GL_BLEND_DST_ALPHA, GL_BLEND_EQUATION_RGB, GL_BLEND_EQUATION_ALPHA,
      GL_STENCIL_FUNC, GL_STENCIL_BACK_FUNC, GL_STENCIL_BACK_REF, GL_STENCIL_BACK_VALUE_MASK,
      GL_STENCIL_FAIL, GL_STENCIL_PASS_DEPTH_FAIL, GL_STENCIL_PASS_DEPTH_PASS,
      GL_STENCIL_WRITEMASK, GL_STENCIL_BACK_WRITEMASK, GL_UNPACK_ROW_LENGTH, GL_UNPACK_ALIGNMENT,
      GL_PACK_SKIP_PIXELS, GL_PACK_ALIGNMENT, GL_CLAMP_READ_COLOR, GL_ARRAY_BUFFER_BINDING,
      GL_PIXEL_PACK_BUFFER_BINDING, GL_PIXEL_UNPACK_BUFFER_BINDING, GL_VERTEX_ARRAY_BINDING,
      GL_RENDERBUFFER_BINDING, GL_DRAW_FRAMEBUFFER_BINDING, GL_READ_FRAMEBUFFER_BINDING,
      GL_CURRENT_PROGRAM, GL_ACTIVE_TEXTURE, GL_CLIP_ORIGIN, GL_CLIP_DEPTH_MODE}) {
    // clang-format on
    glGetDoublev(name, (state[name] = std::vector<double>(4)).data());
  }
  GLint const active = static_cast<GLint>(state[GL_ACTIVE_TEXTURE][0]);
  for (GLuint unit = 0; unit != 8; ++unit) {
    glActiveTexture(GL_TEXTURE0 + unit);
    for (GLenum const name :
         {GL_TEXTURE_BINDING_2D, GL_TEXTURE_BINDING_CUBE_MAP, GL_SAMPLER_BINDING}) {
      glGetDoublev(name, &state[name].emplace_back());
    }
  }
  glActiveTexture(static_cast<GLenum>(active));
  for (GLuint buffer = 0; buffer != 2; ++buffer) {
    GLint mask[4];
    glGetIntegeri_v(GL_COLOR_WRITEMASK, buffer, mask);
    state[GL_COLOR_WRITEMASK].insert(state[GL_COLOR_WRITEMASK].end(), mask, mask + 4);
    state[GL_BLEND].push_back(glIsEnabledi(GL_BLEND, buffer));
  }
  while (glGetError() != GL_NO_ERROR) continue;
  return state;
}

TEST_F(ContextTest, AHostsContextDrawsTheSamePictureAndIsLeftAsItWas) {
  auto const picture = DrawPicture();
  auto const ids = DrawNumbers();
  HostContext const host;
  SetUnusualState();
  auto const before = GetState();
  UseCurrentContext();
  EXPECT_TRUE(AreEqual(DrawPicture(), picture));
  EXPECT_EQ(DrawNumbers(), ids);
  for (auto const& [name, values] : GetState())
    EXPECT_EQ(values, before.at(name)) << std::hex << name;
  m_renderer.reset();
  m_context.reset();
  EXPECT_EQ(GetState(), before);
  EXPECT_EQ(eglGetCurrentContext(), host.Get());
}

TEST_F(ContextTest, TheOwnContextLeavesTheHostsCurrent) {
  auto const picture = DrawPicture();
  HostContext const host;
  EXPECT_TRUE(AreEqual(DrawPicture(), picture));
  EXPECT_EQ(eglGetCurrentContext(), host.Get());
  m_renderer.reset();
  m_context.reset();
  EXPECT_EQ(eglGetCurrentContext(), host.Get());
}

TEST_F(ContextTest, RefusesWhatIsNotCurrentOrTooOld) {
  m_renderer.reset();
  m_context.reset();
  EXPECT_THROW(renderer::NContext{renderer::NCS_CURRENT}, renderer::NRenderError);
  {
    HostContext const host;
    EXPECT_NO_THROW(renderer::NContext{renderer::NCS_CURRENT});
  }
  EGLDisplay const display =
      eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
  eglBindAPI(EGL_OPENGL_ES_API);
  EGLint const wanted[] = {EGL_CONTEXT_MAJOR_VERSION, 2, EGL_NONE};
  EGLContext const embedded = eglCreateContext(display, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, wanted);
  ASSERT_NE(embedded, EGL_NO_CONTEXT);
  eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, embedded);
  EXPECT_THROW(renderer::NContext{renderer::NCS_CURRENT}, renderer::NRenderError);
  eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  eglDestroyContext(display, embedded);
  eglBindAPI(EGL_OPENGL_API);
}

}  // namespace
}  // namespace corvanta::render_tests
