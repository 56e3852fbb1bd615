#pragma once

#include <vector>

#include "corvanta/export.h"
#include "corvanta/vx_math/Matrix.h"

namespace VX_Math {

/// The matrices of a walk down a hierarchy. Starts with one, the identity.
class CORVANTA_API MatrixStack {
 public:
  MatrixStack();

  /// Puts a copy of the top above it.
  void Push() { m_matrices.push_back(m_matrices.back()); }
  /// Takes the top away. The last matrix stays.
  void Pop() noexcept {
    if (m_matrices.size() > 1) m_matrices.pop_back();
  }
  /// Stands until the next `Push` or `Pop`.
  Matrix const& GetTop() const noexcept { return m_matrices.back(); }
  /// Puts `m` in the place of the top.
  void LoadMatrix(Matrix const& m) noexcept { m_matrices.back() = m; }
  /// Applies `m` before the top: top = m * top.
  void MultMatrixLocal(Matrix const& m) noexcept { m_matrices.back().MultLeft(m); }

 private:
  std::vector<Matrix> m_matrices;
};

}  // namespace VX_Math
