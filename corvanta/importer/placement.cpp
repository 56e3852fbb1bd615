#include "corvanta/importer/placement.h"

#include <algorithm>
#include <cmath>

#include "corvanta/core/text/convert.h"
#include "corvanta/vx_math/Quaternion.h"

namespace corvanta::importer {

using VX_Math::Matrix;
using VX_Math::Vec3;

Matrix ToMatrix(std::array<float, 16> const& m) {
  return {m[0], m[1], m[2],  m[3],  m[4],  m[5],  m[6],  m[7],
          m[8], m[9], m[10], m[11], m[12], m[13], m[14], m[15]};
}

void SetName(core::name::NNamedObject& object, std::string_view name) {
  if (!name.empty()) object.SetName(core::text::ToWide(name));
}

Matrix GetPlace(neutral::NLight const& light) {
  Matrix place;
  place.SetTranslate(ToVec3(light.position));
  if (light.kind == neutral::NLK_POINT) return place;
  Vec3 const direction = ToVec3(light.direction);
  if (direction == Vec3()) return place;
  return Matrix(VX_Math::Quaternion(Vec3(0.0f, 0.0f, -1.0f), direction)) * place;
}

Matrix GetPlace(neutral::NCamera const& camera) {
  Matrix place;
  place.SetTranslate(ToVec3(camera.position));
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

}  // namespace corvanta::importer
