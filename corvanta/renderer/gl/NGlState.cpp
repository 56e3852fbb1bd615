#include "corvanta/renderer/gl/NGlState.h"

#include <cstddef>

#include "corvanta/renderer/gl/objects.h"
#include "corvanta/renderer/gl/shaders.h"

namespace corvanta::renderer {

namespace {

struct Switch {
  GLenum name;
  bool isOn;  // while the renderer draws
};
constexpr Switch kSwitches[] = {
    {GL_CULL_FACE, false},
    {GL_DEPTH_TEST, false},
    {GL_DEPTH_CLAMP, false},
    {GL_SCISSOR_TEST, false},
    {GL_STENCIL_TEST, false},
    {GL_COLOR_LOGIC_OP, false},
    {GL_FRAMEBUFFER_SRGB, false},
    {GL_MULTISAMPLE, true},
    {GL_DITHER, true},
    {GL_LINE_SMOOTH, false},
    {GL_POLYGON_SMOOTH, false},
    {GL_POLYGON_OFFSET_FILL, false},
    {GL_POLYGON_OFFSET_LINE, false},
    {GL_PRIMITIVE_RESTART, false},
    {GL_PROGRAM_POINT_SIZE, false},
    {GL_RASTERIZER_DISCARD, false},
    {GL_SAMPLE_ALPHA_TO_COVERAGE, false},
    {GL_SAMPLE_ALPHA_TO_ONE, false},
    {GL_SAMPLE_COVERAGE, false},
    {GL_SAMPLE_MASK, false},
    {GL_TEXTURE_CUBE_MAP_SEAMLESS, true},
    {GL_CLIP_DISTANCE0, false},
    {GL_CLIP_DISTANCE1, false},
    {GL_CLIP_DISTANCE2, false},
    {GL_CLIP_DISTANCE3, false},
    {GL_CLIP_DISTANCE4, false},
    {GL_CLIP_DISTANCE5, false},
    {GL_CLIP_DISTANCE6, false},
    {GL_CLIP_DISTANCE7, false},
};

struct Buffer {
  GLenum target, binding;
};
constexpr Buffer kBuffers[] = {{GL_ARRAY_BUFFER, GL_ARRAY_BUFFER_BINDING},
                               {GL_PIXEL_PACK_BUFFER, GL_PIXEL_PACK_BUFFER_BINDING},
                               {GL_PIXEL_UNPACK_BUFFER, GL_PIXEL_UNPACK_BUFFER_BINDING}};

struct Storage {
  GLenum name;
  GLint initial;
};
constexpr Storage kPixelStorage[] = {
    {GL_UNPACK_ALIGNMENT, 4},  {GL_UNPACK_ROW_LENGTH, 0},  {GL_UNPACK_IMAGE_HEIGHT, 0},
    {GL_UNPACK_SKIP_ROWS, 0},  {GL_UNPACK_SKIP_PIXELS, 0}, {GL_UNPACK_SKIP_IMAGES, 0},
    {GL_UNPACK_SWAP_BYTES, 0}, {GL_UNPACK_LSB_FIRST, 0},   {GL_PACK_ALIGNMENT, 4},
    {GL_PACK_ROW_LENGTH, 0},   {GL_PACK_IMAGE_HEIGHT, 0},  {GL_PACK_SKIP_ROWS, 0},
    {GL_PACK_SKIP_PIXELS, 0},  {GL_PACK_SKIP_IMAGES, 0},   {GL_PACK_SWAP_BYTES, 0},
    {GL_PACK_LSB_FIRST, 0},
};

constexpr GLenum kFaces[] = {GL_FRONT, GL_BACK};
constexpr GLenum kStencilNames[2][7] = {
    {GL_STENCIL_FUNC, GL_STENCIL_REF, GL_STENCIL_VALUE_MASK, GL_STENCIL_FAIL,
     GL_STENCIL_PASS_DEPTH_FAIL, GL_STENCIL_PASS_DEPTH_PASS, GL_STENCIL_WRITEMASK},
    {GL_STENCIL_BACK_FUNC, GL_STENCIL_BACK_REF, GL_STENCIL_BACK_VALUE_MASK, GL_STENCIL_BACK_FAIL,
     GL_STENCIL_BACK_PASS_DEPTH_FAIL, GL_STENCIL_BACK_PASS_DEPTH_PASS, GL_STENCIL_BACK_WRITEMASK}};
constexpr GLenum kBlendNames[] = {GL_BLEND_SRC_RGB, GL_BLEND_DST_RGB, GL_BLEND_SRC_ALPHA,
                                  GL_BLEND_DST_ALPHA};

GLint GetInteger(GLenum name) {
  GLint value = 0;
  glGetIntegerv(name, &value);
  return value;
}

GLenum GetEnumerator(GLint value) { return static_cast<GLenum>(value); }
GLuint GetName(GLint value) { return static_cast<GLuint>(value); }

void Set(GLenum name, bool isOn) { isOn ? glEnable(name) : glDisable(name); }

}  // namespace

NGlState::NGlState()
    : m_framebuffers{GetInteger(GL_DRAW_FRAMEBUFFER_BINDING),
                     GetInteger(GL_READ_FRAMEBUFFER_BINDING)},
      m_renderbuffer(GetInteger(GL_RENDERBUFFER_BINDING)),
      m_program(GetInteger(GL_CURRENT_PROGRAM)),
      m_vertexArray(GetInteger(GL_VERTEX_ARRAY_BINDING)),
      m_activeTexture(GetInteger(GL_ACTIVE_TEXTURE)),
      m_clearStencil(GetInteger(GL_STENCIL_CLEAR_VALUE)),
      m_depthFunction(GetInteger(GL_DEPTH_FUNC)),
      m_readClamp(GetInteger(GL_CLAMP_READ_COLOR)),
      m_culledFace(GetInteger(GL_CULL_FACE_MODE)),
      m_frontFace(GetInteger(GL_FRONT_FACE)),
      m_blendEquations{GetInteger(GL_BLEND_EQUATION_RGB), GetInteger(GL_BLEND_EQUATION_ALPHA)},
      m_clipControl{},
      m_polygonMode{} {
  for (Buffer const& buffer : kBuffers) m_buffers.push_back(GetInteger(buffer.binding));
  for (GLenum unit = 0; unit != kUnitCount; ++unit) {
    glActiveTexture(GL_TEXTURE0 + unit);
    m_units.push_back({GetInteger(GL_TEXTURE_BINDING_2D), GetInteger(GL_TEXTURE_BINDING_CUBE_MAP),
                       GetInteger(GL_SAMPLER_BINDING)});
  }
  for (Switch const& entry : kSwitches) m_switches.push_back(glIsEnabled(entry.name));
  for (Storage const& entry : kPixelStorage) m_pixelStorage.push_back(GetInteger(entry.name));
  GLint const drawBuffers = GetInteger(GL_MAX_DRAW_BUFFERS);
  for (GLuint buffer = 0; buffer != GetName(drawBuffers); ++buffer) {
    m_blends.push_back(glIsEnabledi(GL_BLEND, buffer));
    glGetBooleani_v(GL_COLOR_WRITEMASK, buffer, m_colorMasks.emplace_back().data());
  }
  glGetIntegerv(GL_VIEWPORT, m_viewport.data());
  glGetIntegerv(GL_SCISSOR_BOX, m_scissor.data());
  glGetFloatv(GL_COLOR_CLEAR_VALUE, m_clearColor.data());
  glGetFloatv(GL_DEPTH_RANGE, m_depthRange.data());
  glGetFloatv(GL_DEPTH_CLEAR_VALUE, &m_clearDepth);
  glGetFloatv(GL_LINE_WIDTH, &m_lineWidth);
  glGetFloatv(GL_POINT_SIZE, &m_pointSize);
  glGetFloatv(GL_POLYGON_OFFSET_FACTOR, &m_polygonOffset[0]);
  glGetFloatv(GL_POLYGON_OFFSET_UNITS, &m_polygonOffset[1]);
  glGetBooleanv(GL_DEPTH_WRITEMASK, &m_depthMask);
  glGetIntegerv(GL_POLYGON_MODE, m_polygonMode.data());
  for (std::size_t face = 0; face != 2; ++face) {
    GLint* const fields[] = {&m_stencil[face].function,  &m_stencil[face].reference,
                             &m_stencil[face].valueMask, &m_stencil[face].fail,
                             &m_stencil[face].depthFail, &m_stencil[face].depthPass,
                             &m_stencil[face].writeMask};
    for (std::size_t i = 0; i != 7; ++i) *fields[i] = GetInteger(kStencilNames[face][i]);
  }
  for (std::size_t i = 0; i != 4; ++i) m_blendFunctions[i] = GetInteger(kBlendNames[i]);
  if (HasClipControl()) {
    m_clipControl = {GetInteger(GL_CLIP_ORIGIN), GetInteger(GL_CLIP_DEPTH_MODE)};
  }
}

void NGlState::Restore() const {
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, GetName(m_framebuffers[0]));
  glBindFramebuffer(GL_READ_FRAMEBUFFER, GetName(m_framebuffers[1]));
  glBindRenderbuffer(GL_RENDERBUFFER, GetName(m_renderbuffer));
  glUseProgram(GetName(m_program));
  glBindVertexArray(GetName(m_vertexArray));
  for (std::size_t i = 0; i != m_buffers.size(); ++i) {
    glBindBuffer(kBuffers[i].target, GetName(m_buffers[i]));
  }
  for (GLuint unit = 0; unit != kUnitCount; ++unit) {
    glActiveTexture(GL_TEXTURE0 + unit);
    glBindTexture(GL_TEXTURE_2D, GetName(m_units[unit].texture));
    glBindTexture(GL_TEXTURE_CUBE_MAP, GetName(m_units[unit].cube));
    glBindSampler(unit, GetName(m_units[unit].sampler));
  }
  glActiveTexture(GetEnumerator(m_activeTexture));
  for (std::size_t i = 0; i != m_switches.size(); ++i) Set(kSwitches[i].name, m_switches[i]);
  for (std::size_t i = 0; i != m_pixelStorage.size(); ++i) {
    glPixelStorei(kPixelStorage[i].name, m_pixelStorage[i]);
  }
  for (GLuint buffer = 0; buffer != m_blends.size(); ++buffer) {
    m_blends[buffer] ? glEnablei(GL_BLEND, buffer) : glDisablei(GL_BLEND, buffer);
    auto const& mask = m_colorMasks[buffer];
    glColorMaski(buffer, mask[0], mask[1], mask[2], mask[3]);
  }
  glViewport(m_viewport[0], m_viewport[1], m_viewport[2], m_viewport[3]);
  glScissor(m_scissor[0], m_scissor[1], m_scissor[2], m_scissor[3]);
  glClearColor(m_clearColor[0], m_clearColor[1], m_clearColor[2], m_clearColor[3]);
  glDepthRange(static_cast<double>(m_depthRange[0]), static_cast<double>(m_depthRange[1]));
  glClearDepth(static_cast<double>(m_clearDepth));
  glClearStencil(m_clearStencil);
  glLineWidth(m_lineWidth);
  glPointSize(m_pointSize);
  glPolygonOffset(m_polygonOffset[0], m_polygonOffset[1]);
  glPolygonMode(GL_FRONT_AND_BACK, GetEnumerator(m_polygonMode[0]));
  glDepthFunc(GetEnumerator(m_depthFunction));
  glDepthMask(m_depthMask);
  glCullFace(GetEnumerator(m_culledFace));
  glFrontFace(GetEnumerator(m_frontFace));
  glClampColor(GL_CLAMP_READ_COLOR, GetEnumerator(m_readClamp));
  for (std::size_t i = 0; i != 2; ++i) {
    StencilFace const& face = m_stencil[i];
    glStencilFuncSeparate(kFaces[i], GetEnumerator(face.function), face.reference,
                          GetName(face.valueMask));
    glStencilOpSeparate(kFaces[i], GetEnumerator(face.fail), GetEnumerator(face.depthFail),
                        GetEnumerator(face.depthPass));
    glStencilMaskSeparate(kFaces[i], GetName(face.writeMask));
  }
  glBlendFuncSeparate(GetEnumerator(m_blendFunctions[0]), GetEnumerator(m_blendFunctions[1]),
                      GetEnumerator(m_blendFunctions[2]), GetEnumerator(m_blendFunctions[3]));
  glBlendEquationSeparate(GetEnumerator(m_blendEquations[0]), GetEnumerator(m_blendEquations[1]));
  if (HasClipControl()) {
    glClipControl(GetEnumerator(m_clipControl[0]), GetEnumerator(m_clipControl[1]));
  }
}

void NGlState::SetDrawingState() {
  for (Switch const& entry : kSwitches) Set(entry.name, entry.isOn);
  for (Storage const& entry : kPixelStorage) glPixelStorei(entry.name, entry.initial);
  for (Buffer const& buffer : kBuffers) glBindBuffer(buffer.target, 0);
  for (GLuint unit = 0; unit != kUnitCount; ++unit) glBindSampler(unit, 0);
  glDisable(GL_BLEND);
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  glDepthRange(0.0, 1.0);
  glClearDepth(0.0);
  glClearStencil(0);
  glClampColor(GL_CLAMP_READ_COLOR, GL_FIXED_ONLY);
  glBlendEquation(GL_FUNC_ADD);
  // The alpha of what is drawn into is no opacity; see NSF_GLOW.
  glBlendFuncSeparate(GL_ONE, GL_ONE_MINUS_SRC_ALPHA, GL_ZERO, GL_ONE_MINUS_SRC_ALPHA);
  glCullFace(GL_BACK);
  glFrontFace(GL_CCW);
  glLineWidth(1.0f);
  if (HasClipControl()) glClipControl(GL_LOWER_LEFT, GL_ZERO_TO_ONE);
}

}  // namespace corvanta::renderer
