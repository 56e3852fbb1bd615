#include "corvanta/vx_math/Box3.h"

#include "corvanta/vx_math/Matrix.h"

namespace VX_Math {

void Box3::Transform(Matrix const& m) noexcept {
  if (IsEmpty()) return;
  if (m(0, 3) == 0.0f && m(1, 3) == 0.0f && m(2, 3) == 0.0f && m(3, 3) == 1.0f) {
    // Rounding is monotonic: the least coordinate of the eight corners is the sum of the least
    // terms, bit for bit.
    Box3 const box = *this;
    for (int column = 0; column != 3; ++column) {
      float const x0 = box.min.x * m(0, column), x1 = box.max.x * m(0, column);
      float const y0 = box.min.y * m(1, column), y1 = box.max.y * m(1, column);
      float const z0 = box.min.z * m(2, column), z1 = box.max.z * m(2, column);
      min[column] = Least(x0, x1) + Least(y0, y1) + Least(z0, z1) + m(3, column);
      max[column] = Greatest(x0, x1) + Greatest(y0, y1) + Greatest(z0, z1) + m(3, column);
    }
    return;
  }
  Box3 box;
  for (int corner = 0; corner != 8; ++corner) {
    Vec3 point((corner & 1) != 0 ? max.x : min.x, (corner & 2) != 0 ? max.y : min.y,
               (corner & 4) != 0 ? max.z : min.z);
    m.MultVecMatrix(point, point);
    box.ExtendBy(point);
  }
  *this = box;
}

}  // namespace VX_Math
