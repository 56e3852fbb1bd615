#include "corvanta/renderer/pass/NInstances.h"

#include <algorithm>

namespace corvanta::renderer {

namespace {

using VX_Math::Matrix;

std::array<float, 16> GetRows(Matrix const& matrix) {
  std::array<float, 16> rows;
  std::copy(matrix[0], matrix[0] + 16, rows.begin());
  return rows;
}

template <class Instance>
void Fill(NGlBuffer const& buffer, std::vector<Instance> const& instances) {
  glBindBuffer(GL_ARRAY_BUFFER, buffer.Get());
  glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(instances.size() * sizeof(Instance)),
               instances.data(), GL_STREAM_DRAW);
}

/// Makes the bound vertex array read rows of floats, from one instance to the next.
/// Units: `stride` and `offset` are bytes.
void SetRows(unsigned location, unsigned count, int size, std::size_t stride, std::size_t offset) {
  for (unsigned row = 0; row != count; ++row) {
    glVertexAttribPointer(location + row, size, GL_FLOAT, GL_FALSE, static_cast<GLsizei>(stride),
                          reinterpret_cast<void const*>(offset));
    glVertexAttribDivisor(location + row, 1);
    glEnableVertexAttribArray(location + row);
    offset += static_cast<std::size_t>(size) * sizeof(float);
  }
}

}  // namespace

NSurfaceInstance::NSurfaceInstance(Matrix const& global, Matrix const& normalMatrix)
    : world(GetRows(global)), normals{normalMatrix(0, 0), normalMatrix(0, 1), normalMatrix(0, 2),
                                      normalMatrix(1, 0), normalMatrix(1, 1), normalMatrix(1, 2),
                                      normalMatrix(2, 0), normalMatrix(2, 1), normalMatrix(2, 2)} {}

NFlatInstance::NFlatInstance(Matrix const& global, std::array<float, 4> const& flatColor)
    : world(GetRows(global)), color(flatColor) {}

void NInstances::Upload(std::vector<NSurfaceInstance> const& instances) {
  Fill(m_buffer, instances);
  m_isFlat = false;
}

void NInstances::Upload(std::vector<NFlatInstance> const& instances) {
  Fill(m_buffer, instances);
  m_isFlat = true;
}

void NInstances::Draw(std::vector<NMeshPart> const& parts, std::size_t first, std::size_t count,
                      bool areTriangles) {
  for (NMeshPart const& part : parts) {
    if (part.count == 0 || part.IsOfTriangles() != areTriangles) continue;
    glBindVertexArray(part.vertexArray);
    std::size_t const triangles =
        std::max<std::size_t>(static_cast<std::size_t>(part.count) / 3, 1);
    std::size_t const most = std::max<std::size_t>(NDrawQueue::kMostTriangles / triangles, 1);
    for (std::size_t done = 0; done < count; done += most) {
      DrawPart(part, first + done, std::min(most, count - done));
    }
  }
}

void NInstances::SetInstances(std::size_t first) const {
  glBindBuffer(GL_ARRAY_BUFFER, m_buffer.Get());
  std::size_t const stride = m_isFlat ? sizeof(NFlatInstance) : sizeof(NSurfaceInstance);
  SetRows(kWorld, 4, 4, stride, first * stride);
  if (m_isFlat) {
    SetRows(kColor, 1, 4, stride, first * stride + offsetof(NFlatInstance, color));
    // The program doesn't read them, and their buffer may have become shorter.
    glDisableVertexAttribArray(kNormalWorld + 1);
    glDisableVertexAttribArray(kNormalWorld + 2);
  } else {
    SetRows(kNormalWorld, 3, 3, stride, first * stride + offsetof(NSurfaceInstance, normals));
  }
}

/// Draws a large mesh in several calls; several instances are drawn by one.
void NInstances::DrawPart(NMeshPart const& part, std::size_t first, std::size_t count) {
  SetInstances(first);
  auto const instances = static_cast<GLsizei>(count);
  constexpr auto kMostCorners = static_cast<GLsizei>(3 * NDrawQueue::kMostTriangles);
  for (GLsizei begin = 0; begin < part.count; begin += kMostCorners) {
    GLsizei const corners = std::min(kMostCorners, part.count - begin);
    if (part.isIndexed) {
      std::size_t const offset = (part.first + static_cast<std::size_t>(begin)) * sizeof(GLuint);
      glDrawElementsInstanced(part.mode, corners, GL_UNSIGNED_INT,
                              reinterpret_cast<void const*>(offset), instances);
    } else {
      glDrawArraysInstanced(part.mode, begin, corners, instances);
    }
    m_queue.Add((static_cast<std::size_t>(corners) / 3 + 1) * count);
  }
}

}  // namespace corvanta::renderer
