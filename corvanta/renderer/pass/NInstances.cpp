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
                      bool areTriangles) const {
  auto const instances = static_cast<GLsizei>(count);
  for (NMeshPart const& part : parts) {
    if (part.count == 0 || part.IsOfTriangles() != areTriangles) continue;
    glBindVertexArray(part.vertexArray);
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
    if (part.isIndexed) {
      glDrawElementsInstanced(part.mode, part.count, GL_UNSIGNED_INT,
                              reinterpret_cast<void const*>(part.first * sizeof(unsigned)),
                              instances);
    } else {
      glDrawArraysInstanced(part.mode, 0, part.count, instances);
    }
  }
}

}  // namespace corvanta::renderer
