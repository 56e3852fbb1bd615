#include "corvanta/renderer/pass/NOcclusionPass.h"

#include "corvanta/renderer/gl/shaders.h"

namespace corvanta::renderer {

namespace {

constexpr char kOcclusionShader[] = R"(#version 330 core
out vec4 result;
uniform sampler2D depths;  // 1 at the near plane, 0 at the far one and where nothing is
uniform vec2 origin;       // of the picture, in pixels
uniform vec2 size;
uniform mat4 projection;   // from the camera's frame to such depths
uniform mat4 back;
uniform float radius;
uniform float falloff;
uniform float contrast;
const int kSamples = 16;
const float kBias = 0.05;

vec3 GetPosition(ivec2 pixel) {
  float depth = texelFetch(depths, clamp(pixel, ivec2(0), ivec2(size) - 1), 0).r;
  vec4 position = back * vec4(2.0 * (vec2(pixel) + 0.5) / size - 1.0, depth, 1.0);
  return position.xyz / position.w;
}

// The nearer in depth of two neighbours is of the same surface.
vec3 GetSlope(ivec2 pixel, vec3 position, ivec2 step) {
  vec3 before = position - GetPosition(pixel - step);
  vec3 after = GetPosition(pixel + step) - position;
  return abs(before.z) < abs(after.z) ? before : after;
}

void main() {
  ivec2 pixel = ivec2(gl_FragCoord.xy - origin);
  float depth = texelFetch(depths, pixel, 0).r;
  vec3 position = GetPosition(pixel);
  vec3 normal = normalize(cross(GetSlope(pixel, position, ivec2(1, 0)), GetSlope(pixel, position, ivec2(0, 1))));
  float hidden = 0.0;
  for (int i = 0; i < kSamples; ++i) {
    float angle = 2.3999632 * float(i);
    float distance = radius * sqrt((float(i) + 0.5) / float(kSamples));
    vec4 clip = projection * vec4(position + distance * vec3(cos(angle), sin(angle), 0.0), 1.0);
    vec2 at = 0.5 + 0.5 * clip.xy / clip.w;
    ivec2 seen = ivec2(floor(at * size));
    vec3 v = GetPosition(seen) - position;
    float share = max(1.0 - abs(v.z) / falloff, 0.0);
    bool isInside = all(greaterThanEqual(at, vec2(0.0))) && all(lessThan(at, vec2(1.0))) && clip.w > 0.0;
    float cosine = dot(normal, v) * inversesqrt(max(dot(v, v), 1e-30));
    hidden += isInside ? max(cosine - kBias, 0.0) * share : 0.0;
  }
  float light = pow(clamp(1.0 - hidden / float(kSamples), 0.0, 1.0), contrast);
  result = vec4(vec3(depth > 0.0 ? light : 1.0), 1.0);
}
)";

}  // namespace

NOcclusionPass::NOcclusionPass()
    : m_program(kBackgroundVertexShader, kOcclusionShader),
      m_origin(m_program.GetUniform("origin")),
      m_size(m_program.GetUniform("size")),
      m_projection(m_program.GetUniform("projection")),
      m_back(m_program.GetUniform("back")),
      m_radius(m_program.GetUniform("radius")),
      m_falloff(m_program.GetUniform("falloff")),
      m_contrast(m_program.GetUniform("contrast")) {}

void NOcclusionPass::CopyDepths(GLuint frame, std::array<GLint, 4> const& rectangle) {
  auto const [left, bottom, width, height] = rectangle;
  glActiveTexture(GL_TEXTURE0);
  glBindTexture(GL_TEXTURE_2D, m_depths.Get());
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_depthFrame.Get());
  if (m_depthSize != std::array{width, height}) {
    m_depthSize = {width, height};
    glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH32F_STENCIL8, width, height, 0, GL_DEPTH_STENCIL,
                 GL_FLOAT_32_UNSIGNED_INT_24_8_REV, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glFramebufferTexture2D(GL_DRAW_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_TEXTURE_2D,
                           m_depths.Get(), 0);
    glDrawBuffer(GL_NONE);
  }
  glDisable(GL_SCISSOR_TEST);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, frame);
  glBlitFramebuffer(left, bottom, left + width, bottom + height, 0, 0, width, height,
                    GL_DEPTH_BUFFER_BIT, GL_NEAREST);
  glEnable(GL_SCISSOR_TEST);
  glBindFramebuffer(GL_FRAMEBUFFER, frame);
}

void NOcclusionPass::Draw(GLuint frame, std::array<GLint, 4> const& rectangle,
                          NViewpoint const& viewpoint, NOcclusion const& occlusion) {
  auto const [left, bottom, width, height] = rectangle;
  if (width <= 0 || height <= 0) return;
  CopyDepths(frame, rectangle);
  NViewpoint own = viewpoint;
  own.view = VX_Math::Matrix();
  VX_Math::Matrix const projection = own.GetReversedDepthViewProjection();
  VX_Math::Matrix const back = projection.Inverse();
  m_program.Use();
  glUniform2f(m_origin, static_cast<float>(left), static_cast<float>(bottom));
  glUniform2f(m_size, static_cast<float>(width), static_cast<float>(height));
  glUniformMatrix4fv(m_projection, 1, GL_FALSE, projection[0]);
  glUniformMatrix4fv(m_back, 1, GL_FALSE, back[0]);
  glUniform1f(m_radius, occlusion.radius);
  glUniform1f(m_falloff, occlusion.falloff);
  glUniform1f(m_contrast, occlusion.contrast);
  glBindVertexArray(m_noVertices.Get());
  glDisable(GL_DEPTH_TEST);
  glEnable(GL_BLEND);
  glBlendFuncSeparate(GL_ZERO, GL_SRC_COLOR, GL_ZERO, GL_ONE);
  glDrawArrays(GL_TRIANGLES, 0, 3);
  glDisable(GL_BLEND);
  glEnable(GL_DEPTH_TEST);
}

}  // namespace corvanta::renderer
