#pragma once

#include <cstddef>
#include <type_traits>

#include "corvanta/export.h"
#include "corvanta/vx_math/Quaternion.h"
#include "corvanta/vx_math/Vec3.h"
#include "corvanta/vx_math/fwd.h"

namespace VX_Math {

/// Sixteen floats, row after row; the translation is row 3. Starts as the identity.
/// Units: row vectors; `a * b` applies `a` first.
class CORVANTA_API Matrix {
 public:
  constexpr Matrix() noexcept
      : m_values{1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f,
                 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f} {}
  // clang-format off
  constexpr Matrix(float m00, float m01, float m02, float m03,
                   float m10, float m11, float m12, float m13,
                   float m20, float m21, float m22, float m23,
                   float m30, float m31, float m32, float m33) noexcept
      : m_values{m00, m01, m02, m03, m10, m11, m12, m13, m20, m21, m22, m23, m30, m31, m32, m33} {}
  // clang-format on
  /// The rotation of `q`, whatever the length of `q`; a zero quaternion gives the identity.
  Matrix(Quaternion const& q) noexcept { SetRotate(q); }

  static constexpr Matrix Identity() noexcept { return {}; }

  /// Requires: both indices are 0 to 3.
  constexpr float& operator()(int row, int column) noexcept { return m_values[4 * row + column]; }
  constexpr float operator()(int row, int column) const noexcept {
    return m_values[4 * row + column];
  }
  /// The four floats of a row; the next row follows on.
  constexpr float* operator[](int row) noexcept { return &m_values[4 * std::ptrdiff_t{row}]; }
  constexpr float const* operator[](int row) const noexcept {
    return &m_values[4 * std::ptrdiff_t{row}];
  }

  /// All sixteen floats, row after row.
  constexpr float* data() noexcept { return m_values; }
  constexpr float const* data() const noexcept { return m_values; }

  friend Matrix operator*(Matrix const& a, Matrix const& b) noexcept;
  friend constexpr bool operator==(Matrix const&, Matrix const&) noexcept = default;

  Matrix& operator*=(Matrix const& m) noexcept { return *this = *this * m; }
  /// Applies `m` after this: this = this * m.
  Matrix& MultRight(Matrix const& m) noexcept { return *this = *this * m; }
  /// Applies `m` before this: this = m * this.
  Matrix& MultLeft(Matrix const& m) noexcept { return *this = m * *this; }

  /// Fails: a singular matrix gives one that isn't finite.
  Matrix Inverse() const noexcept;
  Matrix Transpose() const noexcept;

  /// `in` as a point times this matrix, divided by w. `out` may be `in`.
  void MultVecMatrix(Vec3 const& in, Vec3& out) const noexcept {
    float const x = Column(in, 0) + m_values[12];
    float const y = Column(in, 1) + m_values[13];
    float const z = Column(in, 2) + m_values[14];
    float const w = Column(in, 3) + m_values[15];
    if (w == 1.0f) {
      out = {x, y, z};
    } else {
      out = {x / w, y / w, z / w};
    }
  }
  /// `in` as a direction times this matrix, without the translation. `out` may be `in`.
  void MultDirMatrix(Vec3 const& in, Vec3& out) const noexcept {
    out = {Column(in, 0), Column(in, 1), Column(in, 2)};
  }

  void MakeIdentity() noexcept { *this = Matrix(); }
  /// These four forget what the matrix held.
  void SetTranslate(Vec3 const& translation) noexcept;
  void SetRotate(Quaternion const& q) noexcept;
  void SetScale(Vec3 const& factors) noexcept;
  void SetScale(float factor) noexcept { SetScale(Vec3(factor, factor, factor)); }
  /// Gives the lengths of the first three rows as a scale matrix: the scale of a matrix that scales
  /// before it turns, without its signs. `scale` may be this matrix.
  void GetScale(Matrix& scale) const noexcept;

 private:
  constexpr float Column(Vec3 const& v, int column) const noexcept {
    return v.x * m_values[column] + v.y * m_values[4 + column] + v.z * m_values[8 + column];
  }

  float m_values[16];
};

static_assert(sizeof(Matrix) == 64 && std::is_standard_layout_v<Matrix>);

inline Matrix operator*(Matrix const& a, Matrix const& b) noexcept {
  Matrix product;
  for (int row = 0; row != 16; row += 4) {
    float const x = a.m_values[row];
    float const y = a.m_values[row + 1];
    float const z = a.m_values[row + 2];
    float const w = a.m_values[row + 3];
    for (int column = 0; column != 4; ++column) {
      product.m_values[row + column] = x * b.m_values[column] + y * b.m_values[4 + column] +
                                       z * b.m_values[8 + column] + w * b.m_values[12 + column];
    }
  }
  return product;
}

}  // namespace VX_Math
