#pragma once

#include <epoxy/gl.h>

#include <array>
#include <cstddef>
#include <utility>

namespace corvanta::renderer {

/// Bounds what a driver has accepted and not drawn yet. A driver that draws with the processor
/// keeps some 400 bytes a triangle meanwhile.
/// Requires: its context is current whenever it is used or ends.
class NDrawQueue {
 public:
  /// A draw call shouldn't have more.
  static constexpr std::size_t kMostTriangles = 32768;

  NDrawQueue() = default;
  NDrawQueue(NDrawQueue const&) = delete;
  NDrawQueue& operator=(NDrawQueue const&) = delete;
  ~NDrawQueue() {
    for (GLsync const fence : m_fences) glDeleteSync(fence);
  }

  /// To be called after each draw call: waits for all but the last two times kMostTriangles.
  void Add(std::size_t triangles) {
    m_triangles += triangles;
    if (m_triangles < kMostTriangles) return;
    m_triangles = 0;
    GLsync const oldest = std::exchange(m_fences[0], m_fences[1]);
    m_fences[1] = glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    if (oldest == nullptr) return;
    constexpr GLuint64 kLongest = 10'000'000'000;  // ns
    glClientWaitSync(oldest, GL_SYNC_FLUSH_COMMANDS_BIT, kLongest);
    glDeleteSync(oldest);
  }

 private:
  std::array<GLsync, 2> m_fences{};  // the older first
  std::size_t m_triangles = 0;       // since the last of them
};

}  // namespace corvanta::renderer
