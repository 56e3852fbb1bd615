#include "app/import/placement.h"

#include <algorithm>
#include <cmath>

#include "corvanta/vx_math/Quaternion.h"

namespace corvanta::app {

using VX_Math::Matrix;
using VX_Math::Vec3;

Matrix ToMatrix(aiMatrix4x4 const& m) {
  return {m.a1, m.b1, m.c1, m.d1, m.a2, m.b2, m.c2, m.d2,
          m.a3, m.b3, m.c3, m.d3, m.a4, m.b4, m.c4, m.d4};
}

Matrix GetPlace(aiLight const& light) {
  Matrix place;
  place.SetTranslate(ToVec3(light.mPosition));
  if (light.mType == aiLightSource_POINT) return place;
  Vec3 const direction = ToVec3(light.mDirection);
  if (direction == Vec3()) return place;
  return Matrix(VX_Math::Quaternion(Vec3(0.0f, 0.0f, -1.0f), direction)) * place;
}

Matrix GetPlace(aiCamera const& camera, aiNode const& node) {
  Matrix place;
  // The reader of glTF gives a camera the translation of its node once more.
  aiMatrix4x4 const& own = node.mTransformation;
  if (camera.mPosition == aiVector3D(own.a4, own.b4, own.c4)) return place;
  place.SetTranslate(ToVec3(camera.mPosition));
  return place;
}

bool IsSameTransform(Matrix const& a, Matrix const& b) {
  constexpr float kTolerance = 1e-4f;
  for (int row = 0; row != 4; ++row) {
    Vec3 const rowA(a(row, 0), a(row, 1), a(row, 2));
    Vec3 const rowB(b(row, 0), b(row, 1), b(row, 2));
    // What is lost below the smallest scale in use isn't seen.
    float const size = std::max({rowA.Length(), rowB.Length(), 1e-20f});
    if (!((rowA - rowB).Length() <= kTolerance * size)) return false;
    if (std::abs(a(row, 3) - b(row, 3)) > kTolerance) return false;
  }
  return true;
}

}  // namespace corvanta::app
