#include "corvanta/importer/deform/NAffine.h"

namespace corvanta::importer {

NAffine::NAffine(VX_Math::Matrix const& matrix) {
  for (int row = 0; row != 4; ++row) {
    for (int column = 0; column != 3; ++column) {
      m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = matrix(row, column);
    }
  }
}

NAffine operator*(NAffine const& a, NAffine const& b) {
  NAffine product;
  for (std::size_t row = 0; row != 4; ++row) {
    for (std::size_t column = 0; column != 3; ++column) {
      double sum = row == 3 ? b.m_rows[3][column] : 0.0;
      for (std::size_t k = 0; k != 3; ++k) sum += a.m_rows[row][k] * b.m_rows[k][column];
      product.m_rows[row][column] = sum;
    }
  }
  return product;
}

NAffine NAffine::Inverse() const {
  auto const cross = [](Row const& a, Row const& b) {
    return Row{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
  };
  std::array<Row, 3> const columns{cross(m_rows[1], m_rows[2]), cross(m_rows[2], m_rows[0]),
                                   cross(m_rows[0], m_rows[1])};
  double const determinant =
      m_rows[0][0] * columns[0][0] + m_rows[0][1] * columns[0][1] + m_rows[0][2] * columns[0][2];
  NAffine inverse;
  for (std::size_t row = 0; row != 3; ++row) {
    for (std::size_t column = 0; column != 3; ++column) {
      inverse.m_rows[row][column] = columns[column][row] / determinant;
    }
  }
  for (std::size_t column = 0; column != 3; ++column) {
    double sum = 0.0;
    for (std::size_t k = 0; k != 3; ++k) sum -= m_rows[3][k] * inverse.m_rows[k][column];
    inverse.m_rows[3][column] = sum;
  }
  return inverse;
}

VX_Math::Matrix NAffine::ToMatrix() const {
  VX_Math::Matrix matrix;
  for (int row = 0; row != 4; ++row) {
    for (int column = 0; column != 3; ++column) {
      matrix(row, column) = static_cast<float>(
          m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)]);
    }
  }
  return matrix;
}

}  // namespace corvanta::importer
