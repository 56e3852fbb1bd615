#pragma once

#include <array>
#include <cstddef>

#include "corvanta/vx_math/Matrix.h"

namespace corvanta::importer {

/// An affine transform for row vectors, in double precision: what is common to the places of a mesh
/// and of its joints cancels out, however far from the origin it leads.
class NAffine {
 public:
  /// The identity.
  NAffine() = default;
  /// Forgets the last column.
  explicit NAffine(VX_Math::Matrix const& matrix);

  /// Applies `a` first.
  friend NAffine operator*(NAffine const& a, NAffine const& b);
  /// Fails: a singular one gives one that isn't finite.
  NAffine Inverse() const;
  VX_Math::Matrix ToMatrix() const;

 private:
  using Row = std::array<double, 3>;

  std::array<Row, 4> m_rows{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}, {}}};
};

}  // namespace corvanta::importer
