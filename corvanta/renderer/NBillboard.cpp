#include "corvanta/renderer/NBillboard.h"

#include "corvanta/vx_math/Vec3.h"

namespace corvanta::renderer {

namespace {

using VX_Math::Matrix;
using VX_Math::Vec3;

Vec3 Row(Matrix const& matrix, int row) { return {matrix(row, 0), matrix(row, 1), matrix(row, 2)}; }

}  // namespace

Matrix TurnBillboard(Matrix const& global, NViewpoint const& viewpoint, NBillboard type) {
  Vec3 const right(viewpoint.view(0, 0), viewpoint.view(1, 0), viewpoint.view(2, 0));
  Vec3 const up(viewpoint.view(0, 1), viewpoint.view(1, 1), viewpoint.view(2, 1));
  Vec3 const origin = Row(global, 3);
  Vec3 const toViewpoint =
      Vec3(viewpoint.position[0], viewpoint.position[1], viewpoint.position[2]) -
      origin * viewpoint.position[3];
  Vec3 y = type == NB_FACING ? up : Row(global, 1);
  y.Normalize();
  Vec3 z = toViewpoint - y * y.Dot(toViewpoint);
  if (z.Normalize() == 0.0f) z = right.Cross(y);
  Vec3 const x = y.Cross(z);
  Matrix turned = global;
  Vec3 const axes[] = {x, y, z};
  for (int row = 0; row != 3; ++row) {
    Vec3 const axis = axes[row] * Row(global, row).Length();
    for (int column = 0; column != 3; ++column) turned(row, column) = axis[column];
  }
  return turned;
}

}  // namespace corvanta::renderer
