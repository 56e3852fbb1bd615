#include "corvanta/renderer/pass/NGlowPass.h"

#include <algorithm>
#include <cmath>

#include "corvanta/renderer/gl/shaders.h"

namespace corvanta::renderer {

namespace {

constexpr GLint kShrink = 4;         // the glow has so many pixels fewer a side
constexpr float kDeviation = 0.02f;  // of the picture's height
constexpr char kFragmentShader[] = R"(#version 330 core
out vec4 result;
uniform sampler2D source;
uniform bool fromAlpha;  // colour times the light above white, instead of colour
uniform bool isRay;      // decreases by half a power of e a step, instead of as a Gaussian
uniform vec2 step;       // between two of the thirteen samples; half a deviation
uniform float strength;
uniform vec2 origin;     // of what is drawn into
uniform vec2 scale;

void main() {
  vec2 at = (gl_FragCoord.xy - origin) * scale;
  vec3 sum = vec3(0.0);
  float weights = 0.0;
  for (int i = -6; i <= 6; ++i) {
    float weight = exp(isRay ? -0.5 * abs(float(i)) : -0.125 * float(i * i));
    vec4 texel = textureLod(source, at + float(i) * step, 0.0);
    sum += weight * (fromAlpha ? texel.rgb * texel.a : texel.rgb);
    weights += weight;
  }
  result = vec4(strength * sum / weights, 0.0);
}
)";

}  // namespace

NGlowPass::NGlowPass()
    : m_program(kBackgroundVertexShader, kFragmentShader),
      m_fromAlpha(m_program.GetUniform("fromAlpha")),
      m_isRay(m_program.GetUniform("isRay")),
      m_step(m_program.GetUniform("step")),
      m_strength(m_program.GetUniform("strength")),
      m_origin(m_program.GetUniform("origin")),
      m_scale(m_program.GetUniform("scale")) {}

void NGlowPass::Resize(Plane& plane, GLint width, GLint height) {
  glActiveTexture(GL_TEXTURE0);
  glBindTexture(GL_TEXTURE_2D, plane.texture.Get());
  if (plane.size == std::array{width, height}) return;
  plane.size = {width, height};
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA16F, width, height, 0, GL_RGBA, GL_FLOAT, nullptr);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
  glBindFramebuffer(GL_FRAMEBUFFER, plane.frame.Get());
  glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, plane.texture.Get(),
                         0);
}

void NGlowPass::Spread(Plane const& source, GLint fromAlpha, std::array<float, 2> const& step,
                       float strength, GLint isRay) const {
  glBindTexture(GL_TEXTURE_2D, source.texture.Get());
  glUniform1i(m_fromAlpha, fromAlpha);
  glUniform1i(m_isRay, isRay);
  glUniform2fv(m_step, 1, step.data());
  glUniform1f(m_strength, strength);
  glDrawArrays(GL_TRIANGLES, 0, 3);
}

void NGlowPass::BeginSmall(Plane const& plane) const {
  auto const [width, height] = plane.size;
  glBindFramebuffer(GL_FRAMEBUFFER, plane.frame.Get());
  glDisable(GL_SCISSOR_TEST);
  glDisable(GL_BLEND);
  glViewport(0, 0, width, height);
  glUniform2f(m_origin, 0.0f, 0.0f);
  glUniform2f(m_scale, 1.0f / static_cast<float>(width), 1.0f / static_cast<float>(height));
}

/// What is drawn from now on is added.
void NGlowPass::BeginFrame(GLuint frame, std::array<GLint, 4> const& rectangle) const {
  auto const [left, bottom, width, height] = rectangle;
  glBindFramebuffer(GL_FRAMEBUFFER, frame);
  glViewport(left, bottom, width, height);
  glEnable(GL_SCISSOR_TEST);
  glEnable(GL_BLEND);
  glBlendFuncSeparate(GL_ONE, GL_ONE, GL_ZERO, GL_ONE);
  glUniform2f(m_origin, static_cast<float>(left), static_cast<float>(bottom));
  glUniform2f(m_scale, 1.0f / static_cast<float>(width), 1.0f / static_cast<float>(height));
}

/// Leaves the glow in the second plane.
void NGlowPass::DrawGlow(std::array<float, 2> const& step) {
  BeginSmall(m_planes[0]);
  Spread(m_resolved, 1, {step[0], 0.0f}, 1.0f);
  BeginSmall(m_planes[1]);
  Spread(m_planes[0], 0, {0.0f, step[1]}, 1.0f);
}

void NGlowPass::DrawStar(std::array<float, 2> const& step, GLuint frame,
                         std::array<GLint, 4> const& rectangle, float strength) {
  for (float const side : {-1.0f, 1.0f}) {
    std::array<float, 2> const along{side * step[0] / std::sqrt(2.0f), step[1] / std::sqrt(2.0f)};
    // Between two of the samples of the ray there is no gap.
    BeginSmall(m_planes[0]);
    Spread(m_resolved, 1, {along[0] / 6, along[1] / 6}, 1.0f);
    BeginFrame(frame, rectangle);
    Spread(m_planes[0], 0, along, strength, 1);
  }
}

void NGlowPass::Draw(GLuint frame, std::array<GLint, 4> const& rectangle, float glow, float star) {
  auto const [left, bottom, width, height] = rectangle;
  if (width <= 0 || height <= 0) return;
  Resize(m_resolved, width, height);
  for (Plane& plane : m_planes) {
    Resize(plane, std::max(width / kShrink, 1), std::max(height / kShrink, 1));
  }
  glDisable(GL_DEPTH_TEST);
  glDisable(GL_SCISSOR_TEST);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, frame);
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_resolved.frame.Get());
  glBlitFramebuffer(left, bottom, left + width, bottom + height, 0, 0, width, height,
                    GL_COLOR_BUFFER_BIT, GL_NEAREST);
  m_program.Use();
  glBindVertexArray(m_noVertices.Get());
  // Two samples a deviation.
  float const stepY = kDeviation / 2,
              stepX = stepY * static_cast<float>(height) / static_cast<float>(width);
  if (glow > 0.0f) {
    DrawGlow({stepX, stepY});
    BeginFrame(frame, rectangle);
    Spread(m_planes[1], 0, {0.0f, 0.0f}, glow);
  }
  if (star > 0.0f) DrawStar({2 * stepX, 2 * stepY}, frame, rectangle, star);
  glDisable(GL_BLEND);
  glEnable(GL_DEPTH_TEST);
}

}  // namespace corvanta::renderer
