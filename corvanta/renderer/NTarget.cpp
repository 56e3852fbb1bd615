#include "corvanta/renderer/NTarget.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <string>
#include <utility>

#include "corvanta/renderer/NRenderError.h"
#include "corvanta/renderer/gl/NContextScope.h"
#include "corvanta/renderer/gl/objects.h"

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

struct NTarget::Block {
  void Check(char const* what) const;
  void Attach(NGlFramebuffer const& to, GLenum place, NGlRenderbuffer const& buffer, GLenum content,
              GLsizei samples) const;

  NContext const& context;
  unsigned width, height;
  NGlRenderbuffer color, depth, resolved;
  NGlFramebuffer frame, resolvedFrame;
};

NTarget::NTarget(NContext const& context, unsigned width, unsigned height, NKind kind) {
  if (width == 0 || height == 0) throw NRenderError("a picture needs at least one pixel");
  NContextScope const scope(context);
  GLint most = 0, samples = 0;
  glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &most);
  glGetIntegerv(GL_MAX_SAMPLES, &samples);
  if (std::max(width, height) > std::min(kMostSide, static_cast<unsigned>(most)) ||
      std::uint64_t{width} * height > kMostPixels) {
    throw NRenderError("the picture is too large to be drawn");
  }
  std::unique_ptr<Block> block(new Block{context, width, height, {}, {}, {}, {}, {}});
  bool const isPicture = kind == NTK_PICTURE;
  GLenum const format = isPicture ? GL_RGBA16F : GL_RGBA8;
  GLsizei const count = isPicture ? std::min(kSamples, static_cast<int>(samples)) : 0;
  block->Attach(block->frame, GL_COLOR_ATTACHMENT0, block->color, format, count);
  block->Attach(block->frame, GL_DEPTH_STENCIL_ATTACHMENT, block->depth, GL_DEPTH32F_STENCIL8,
                count);
  block->Check("drawn");
  if (isPicture) {
    block->Attach(block->resolvedFrame, GL_COLOR_ATTACHMENT0, block->resolved, format, 0);
    block->Check("read");
  }
  m_block = std::move(block);
}

NTarget::~NTarget() {
  try {
    NContextScope const scope(m_block->context);
    m_block.reset();
  } catch (std::exception const&) {
    // Another context's objects have the same names: the objects end with their own context.
    static_cast<void>(m_block.release());
  }
}

void NTarget::Block::Attach(NGlFramebuffer const& to, GLenum place, NGlRenderbuffer const& buffer,
                            GLenum content, GLsizei samples) const {
  glBindRenderbuffer(GL_RENDERBUFFER, buffer.Get());
  glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, content, static_cast<GLsizei>(width),
                                   static_cast<GLsizei>(height));
  glBindFramebuffer(GL_FRAMEBUFFER, to.Get());
  glFramebufferRenderbuffer(GL_FRAMEBUFFER, place, GL_RENDERBUFFER, buffer.Get());
}

void NTarget::Block::Check(char const* what) const {
  bool const isWhole = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
  if (glGetError() != GL_NO_ERROR || !isWhole) {
    throw NRenderError(std::string("a picture of this size can't be ") + what);
  }
}

unsigned NTarget::GetWidth() const { return m_block->width; }

unsigned NTarget::GetHeight() const { return m_block->height; }

void NTarget::Bind() const { glBindFramebuffer(GL_FRAMEBUFFER, m_block->frame.Get()); }

unsigned NTarget::GetFrame() const { return m_block->frame.Get(); }

void NTarget::Clear(float opacity) const {
  Bind();
  glDisable(GL_SCISSOR_TEST);
  glClearColor(0.0f, 0.0f, 0.0f, opacity);
  glClear(GL_COLOR_BUFFER_BIT);
}

void NTarget::ReadLight(
    std::function<void(unsigned y, std::vector<float> const& light)> const& row) const {
  Block const& block = *m_block;
  auto const width = static_cast<GLint>(block.width);
  auto const height = static_cast<GLint>(block.height);
  // It would hold for the copy too.
  glDisable(GL_SCISSOR_TEST);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, block.frame.Get());
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, block.resolvedFrame.Get());
  glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, block.resolvedFrame.Get());
  std::vector<float> light(std::size_t{4} * block.width);
  TurnRows(block.height, [&](unsigned from, unsigned to) {
    glReadPixels(0, static_cast<GLint>(from), width, 1, GL_RGBA, GL_FLOAT, light.data());
    row(to, light);
  });
  block.Check("read");
}

NPixels NTarget::ReadPicture() const {
  NContextScope const scope(m_block->context);
  NPixels pixels(m_block->width, m_block->height);
  ReadLight([&pixels](unsigned y, std::vector<float> const& light) {
    unsigned char* to = pixels.GetRow(y);
    for (std::size_t i = 0; i != light.size(); i += 4) {
      to = std::transform(&light[i], &light[i] + 3, to, &Encode);
    }
  });
  return pixels;
}

NPixels NTarget::ReadTransparentPicture() const {
  NContextScope const scope(m_block->context);
  NPixels pixels(m_block->width, m_block->height);
  std::vector<unsigned char> opacities(std::size_t{m_block->width} * m_block->height);
  ReadLight([&](unsigned y, std::vector<float> const& light) {
    unsigned char* to = pixels.GetRow(y);
    unsigned char* opacity = &opacities[std::size_t{m_block->width} * y];
    for (std::size_t i = 0; i != light.size(); i += 4) {
      float const covered = std::clamp(light[i + 3], 0.0f, 1.0f);
      *opacity++ = static_cast<unsigned char>(std::lround(covered * 255.0f));
      // The light of what is covered alone.
      for (std::size_t c = 0; c != 3; ++c) {
        *to++ = Encode(covered > 0.0f ? light[i + c] / covered : 0.0f);
      }
    }
  });
  pixels.SetOpacities(std::move(opacities));
  return pixels;
}

std::vector<std::uint32_t> NTarget::ReadNumbers() const {
  NContextScope const scope(m_block->context);
  glBindFramebuffer(GL_FRAMEBUFFER, m_block->frame.Get());
  std::vector<std::uint32_t> numbers(std::size_t{m_block->width} * m_block->height);
  std::vector<unsigned char> row(std::size_t{4} * m_block->width);
  TurnRows(m_block->height, [&](unsigned from, unsigned to) {
    glReadPixels(0, static_cast<GLint>(from), static_cast<GLsizei>(m_block->width), 1, GL_RGBA,
                 GL_UNSIGNED_BYTE, row.data());
    for (std::size_t x = 0; x != m_block->width; ++x) {
      numbers[std::size_t{to} * m_block->width + x] =
          static_cast<std::uint32_t>(row[4 * x]) << 16 |
          static_cast<std::uint32_t>(row[4 * x + 1]) << 8 | row[4 * x + 2];
    }
  });
  m_block->Check("read");
  return numbers;
}

std::vector<float> NTarget::ReadDepths() const {
  NContextScope const scope(m_block->context);
  glBindFramebuffer(GL_FRAMEBUFFER, m_block->frame.Get());
  std::vector<float> depths(std::size_t{m_block->width} * m_block->height);
  TurnRows(m_block->height, [&](unsigned from, unsigned to) {
    glReadPixels(0, static_cast<GLint>(from), static_cast<GLsizei>(m_block->width), 1,
                 GL_DEPTH_COMPONENT, GL_FLOAT, &depths[std::size_t{to} * m_block->width]);
  });
  m_block->Check("read");
  return depths;
}

}  // namespace corvanta::renderer
