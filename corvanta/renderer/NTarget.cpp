#include "corvanta/renderer/NTarget.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "corvanta/renderer/NRenderError.h"

namespace corvanta::renderer {

namespace {

constexpr int kSamples = 4;
// Linear light in so many steps: finer than the transfer function's first byte.
constexpr int kSteps = 16384;

std::array<unsigned char, kSteps + 1> MakeTransferTable() {
  std::array<unsigned char, kSteps + 1> table{};
  for (int i = 0; i <= kSteps; ++i) {
    double const linear = static_cast<double>(i) / kSteps;
    double const value =
        linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
    table[static_cast<std::size_t>(i)] = static_cast<unsigned char>(std::lround(value * 255));
  }
  return table;
}

unsigned char Encode(float linear) {
  static auto const table = MakeTransferTable();
  float const clamped = linear > 0.0f ? std::min(linear, 1.0f) : 0.0f;
  return table[static_cast<std::size_t>(clamped * kSteps + 0.5f)];
}

// Calls `row(from, to)` for each row of a picture that OpenGL gives from the bottom.
template <class Row>
void TurnRows(unsigned height, Row const& row) {
  for (unsigned y = 0; y != height; ++y) row(height - 1 - y, y);
}

}  // namespace

NTarget::NTarget(NGl const& gl, unsigned width, unsigned height, NKind kind)
    : m_gl(&gl),
      m_width(width),
      m_height(height),
      m_kind(kind),
      m_color(gl),
      m_depth(gl),
      m_resolved(gl),
      m_frame(gl),
      m_resolvedFrame(gl) {
  GLint most = 0, samples = 0;
  gl.glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &most);
  gl.glGetIntegerv(GL_MAX_SAMPLES, &samples);
  if (width == 0 || height == 0) throw NRenderError("a picture needs at least one pixel");
  if (std::max(width, height) > std::min(kMostSide, static_cast<unsigned>(most)) ||
      std::uint64_t{width} * height > kMostPixels) {
    throw NRenderError("the picture is too large to be drawn");
  }
  bool const isPicture = kind == NTK_PICTURE;
  GLenum const format = isPicture ? GL_RGBA16F : GL_RGBA8;
  auto const attach = [&](NGlFramebuffer const& frame, GLenum place, NGlRenderbuffer const& buffer,
                          GLenum content, GLsizei count) {
    gl.glBindRenderbuffer(GL_RENDERBUFFER, buffer.Get());
    gl.glRenderbufferStorageMultisample(GL_RENDERBUFFER, count, content,
                                        static_cast<GLsizei>(width), static_cast<GLsizei>(height));
    gl.glBindFramebuffer(GL_FRAMEBUFFER, frame.Get());
    gl.glFramebufferRenderbuffer(GL_FRAMEBUFFER, place, GL_RENDERBUFFER, buffer.Get());
  };
  GLsizei const count = isPicture ? std::min(kSamples, static_cast<int>(samples)) : 0;
  attach(m_frame, GL_COLOR_ATTACHMENT0, m_color, format, count);
  attach(m_frame, GL_DEPTH_STENCIL_ATTACHMENT, m_depth, GL_DEPTH32F_STENCIL8, count);
  Check("drawn");
  if (isPicture) {
    attach(m_resolvedFrame, GL_COLOR_ATTACHMENT0, m_resolved, format, 0);
    Check("read");
  }
}

void NTarget::Check(char const* what) const {
  bool const isWhole = m_gl->glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
  if (m_gl->glGetError() != GL_NO_ERROR || !isWhole) {
    throw NRenderError(std::string("a picture of this size can't be ") + what);
  }
}

void NTarget::Bind() const { m_gl->glBindFramebuffer(GL_FRAMEBUFFER, m_frame.Get()); }

NPixels NTarget::ReadPicture() const {
  auto const width = static_cast<GLint>(m_width);
  auto const height = static_cast<GLint>(m_height);
  // It would hold for the copy too.
  m_gl->glDisable(GL_SCISSOR_TEST);
  m_gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, m_frame.Get());
  m_gl->glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_resolvedFrame.Get());
  m_gl->glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT,
                          GL_NEAREST);
  m_gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, m_resolvedFrame.Get());
  NPixels pixels(m_width, m_height);
  std::vector<float> row(std::size_t{3} * m_width);
  TurnRows(m_height, [&](unsigned from, unsigned to) {
    m_gl->glReadPixels(0, static_cast<GLint>(from), width, 1, GL_RGB, GL_FLOAT, row.data());
    std::transform(row.begin(), row.end(), pixels.GetRow(to), &Encode);
  });
  Check("read");
  return pixels;
}

std::vector<std::uint32_t> NTarget::ReadNumbers() const {
  m_gl->glBindFramebuffer(GL_FRAMEBUFFER, m_frame.Get());
  std::vector<std::uint32_t> numbers(std::size_t{m_width} * m_height);
  std::vector<unsigned char> row(std::size_t{4} * m_width);
  TurnRows(m_height, [&](unsigned from, unsigned to) {
    m_gl->glReadPixels(0, static_cast<GLint>(from), static_cast<GLsizei>(m_width), 1, GL_RGBA,
                       GL_UNSIGNED_BYTE, row.data());
    for (std::size_t x = 0; x != m_width; ++x) {
      numbers[std::size_t{to} * m_width + x] = static_cast<std::uint32_t>(row[4 * x]) << 16 |
                                               static_cast<std::uint32_t>(row[4 * x + 1]) << 8 |
                                               row[4 * x + 2];
    }
  });
  Check("read");
  return numbers;
}

std::vector<float> NTarget::ReadDepths() const {
  m_gl->glBindFramebuffer(GL_FRAMEBUFFER, m_frame.Get());
  std::vector<float> depths(std::size_t{m_width} * m_height);
  TurnRows(m_height, [&](unsigned from, unsigned to) {
    m_gl->glReadPixels(0, static_cast<GLint>(from), static_cast<GLsizei>(m_width), 1,
                       GL_DEPTH_COMPONENT, GL_FLOAT, &depths[std::size_t{to} * m_width]);
  });
  Check("read");
  return depths;
}

}  // namespace corvanta::renderer
