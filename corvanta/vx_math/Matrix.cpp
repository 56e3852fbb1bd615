#include "corvanta/vx_math/Matrix.h"

#include <cmath>

#include "corvanta/vx_math/MatrixStack.h"

namespace VX_Math {

namespace {

// Both inverses are the adjugate by the determinant, in double: no product of three or four floats
// leaves the range of a double, and cancellation costs nothing that a float could hold.

Matrix InverseAffine(Matrix const& m) {
  double const a00 = m(0, 0), a01 = m(0, 1), a02 = m(0, 2);
  double const a10 = m(1, 0), a11 = m(1, 1), a12 = m(1, 2);
  double const a20 = m(2, 0), a21 = m(2, 1), a22 = m(2, 2);
  double const x = m(3, 0), y = m(3, 1), z = m(3, 2);
  double const c0 = a11 * a22 - a12 * a21;
  double const c1 = a12 * a20 - a10 * a22;
  double const c2 = a10 * a21 - a11 * a20;
  double const factor = 1.0 / (a00 * c0 + a01 * c1 + a02 * c2);
  double const b00 = c0 * factor;
  double const b10 = c1 * factor;
  double const b20 = c2 * factor;
  double const b01 = (a02 * a21 - a01 * a22) * factor;
  double const b11 = (a00 * a22 - a02 * a20) * factor;
  double const b21 = (a01 * a20 - a00 * a21) * factor;
  double const b02 = (a01 * a12 - a02 * a11) * factor;
  double const b12 = (a02 * a10 - a00 * a12) * factor;
  double const b22 = (a00 * a11 - a01 * a10) * factor;
  auto const f = [](double value) { return static_cast<float>(value); };
  return {f(b00),
          f(b01),
          f(b02),
          0.0f,
          f(b10),
          f(b11),
          f(b12),
          0.0f,
          f(b20),
          f(b21),
          f(b22),
          0.0f,
          f(-(x * b00 + y * b10 + z * b20)),
          f(-(x * b01 + y * b11 + z * b21)),
          f(-(x * b02 + y * b12 + z * b22)),
          1.0f};
}

// Laplace's expansion by the minors of the upper (s) and the lower (c) two rows.
Matrix InverseProjective(Matrix const& m) {
  double const a00 = m(0, 0), a01 = m(0, 1), a02 = m(0, 2), a03 = m(0, 3);
  double const a10 = m(1, 0), a11 = m(1, 1), a12 = m(1, 2), a13 = m(1, 3);
  double const a20 = m(2, 0), a21 = m(2, 1), a22 = m(2, 2), a23 = m(2, 3);
  double const a30 = m(3, 0), a31 = m(3, 1), a32 = m(3, 2), a33 = m(3, 3);
  double const s01 = a00 * a11 - a10 * a01, s02 = a00 * a12 - a10 * a02;
  double const s03 = a00 * a13 - a10 * a03, s12 = a01 * a12 - a11 * a02;
  double const s13 = a01 * a13 - a11 * a03, s23 = a02 * a13 - a12 * a03;
  double const c01 = a20 * a31 - a30 * a21, c02 = a20 * a32 - a30 * a22;
  double const c03 = a20 * a33 - a30 * a23, c12 = a21 * a32 - a31 * a22;
  double const c13 = a21 * a33 - a31 * a23, c23 = a22 * a33 - a32 * a23;
  double const factor =
      1.0 / (s01 * c23 - s02 * c13 + s03 * c12 + s12 * c03 - s13 * c02 + s23 * c01);
  auto const f = [factor](double cofactor) { return static_cast<float>(cofactor * factor); };
  return {f(a11 * c23 - a12 * c13 + a13 * c12), f(a02 * c13 - a01 * c23 - a03 * c12),
          f(a31 * s23 - a32 * s13 + a33 * s12), f(a22 * s13 - a21 * s23 - a23 * s12),
          f(a12 * c03 - a10 * c23 - a13 * c02), f(a00 * c23 - a02 * c03 + a03 * c02),
          f(a32 * s03 - a30 * s23 - a33 * s02), f(a20 * s23 - a22 * s03 + a23 * s02),
          f(a10 * c13 - a11 * c03 + a13 * c01), f(a01 * c03 - a00 * c13 - a03 * c01),
          f(a30 * s13 - a31 * s03 + a33 * s01), f(a21 * s03 - a20 * s13 - a23 * s01),
          f(a11 * c02 - a10 * c12 - a12 * c01), f(a00 * c12 - a01 * c02 + a02 * c01),
          f(a31 * s02 - a30 * s12 - a32 * s01), f(a20 * s12 - a21 * s02 + a22 * s01)};
}

}  // namespace

Matrix Matrix::Inverse() const noexcept {
  bool const isAffine =
      m_values[3] == 0.0f && m_values[7] == 0.0f && m_values[11] == 0.0f && m_values[15] == 1.0f;
  return isAffine ? InverseAffine(*this) : InverseProjective(*this);
}

Matrix Matrix::Transpose() const noexcept {
  Matrix result;
  for (int row = 0; row != 4; ++row) {
    for (int column = 0; column != 4; ++column) result(column, row) = (*this)(row, column);
  }
  return result;
}

void Matrix::SetTranslate(Vec3 const& translation) noexcept {
  MakeIdentity();
  m_values[12] = translation.x;
  m_values[13] = translation.y;
  m_values[14] = translation.z;
}

void Matrix::SetRotate(Quaternion const& q) noexcept {
  double const x = q.x, y = q.y, z = q.z, w = q.w;
  double const square = x * x + y * y + z * z + w * w;
  double const s = square == 0.0 ? 0.0 : 2.0 / square;
  auto const f = [](double value) { return static_cast<float>(value); };
  *this = {f(1.0 - s * (y * y + z * z)),
           f(s * (x * y + z * w)),
           f(s * (x * z - y * w)),
           0.0f,
           f(s * (x * y - z * w)),
           f(1.0 - s * (x * x + z * z)),
           f(s * (y * z + x * w)),
           0.0f,
           f(s * (x * z + y * w)),
           f(s * (y * z - x * w)),
           f(1.0 - s * (x * x + y * y)),
           0.0f,
           0.0f,
           0.0f,
           0.0f,
           1.0f};
}

void Matrix::SetScale(Vec3 const& factors) noexcept {
  MakeIdentity();
  m_values[0] = factors.x;
  m_values[5] = factors.y;
  m_values[10] = factors.z;
}

void Matrix::GetScale(Matrix& scale) const noexcept {
  auto const length = [this](int row) {
    return Vec3(m_values[4 * row], m_values[4 * row + 1], m_values[4 * row + 2]).Length();
  };
  scale.SetScale(Vec3(length(0), length(1), length(2)));
}

MatrixStack::MatrixStack() : m_matrices(1) {}

}  // namespace VX_Math
