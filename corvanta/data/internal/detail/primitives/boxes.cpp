#include <iterator>

#include "corvanta/data/internal/detail/primitives/NMesh.h"
#include "corvanta/data/internal/detail/primitives/meshes.h"

namespace corvanta::data::internal::detail {

using VX_Math::Vec3;

namespace {

/// Two triangles.
using Face = Vec3[6];

// The planes x = -1, z = -1, x = 1, z = 1, y = 1, y = -1.
// clang-format off
constexpr Vec3 kCubeNormals[6] = {
    {-1, 0, 0}, {0, 0, -1}, {1, 0, 0}, {0, 0, 1}, {0, 1, 0}, {0, -1, 0},
};

constexpr Face kCube[6] = {
    {{-1, -1, -1}, {-1, -1,  1}, {-1,  1, -1},   {-1, -1,  1}, {-1,  1,  1}, {-1,  1, -1}},
    {{-1, -1, -1}, {-1,  1, -1}, { 1,  1, -1},   {-1, -1, -1}, { 1,  1, -1}, { 1, -1, -1}},
    {{ 1, -1, -1}, { 1,  1, -1}, { 1,  1,  1},   { 1, -1, -1}, { 1,  1,  1}, { 1, -1,  1}},
    {{ 1, -1,  1}, { 1,  1,  1}, {-1,  1,  1},   { 1, -1,  1}, {-1,  1,  1}, {-1, -1,  1}},
    {{-1,  1, -1}, {-1,  1,  1}, { 1,  1, -1},   {-1,  1,  1}, { 1,  1,  1}, { 1,  1, -1}},
    {{-1, -1, -1}, { 1, -1, -1}, {-1, -1,  1},   { 1, -1, -1}, { 1, -1,  1}, {-1, -1,  1}},
};

constexpr Face kInwardCube[6] = {
    {{-1, -1, -1}, {-1,  1, -1}, {-1, -1,  1},   {-1, -1,  1}, {-1,  1, -1}, {-1,  1,  1}},
    {{-1, -1, -1}, { 1,  1, -1}, {-1,  1, -1},   {-1, -1, -1}, { 1, -1, -1}, { 1,  1, -1}},
    {{ 1, -1, -1}, { 1,  1,  1}, { 1,  1, -1},   { 1, -1, -1}, { 1, -1,  1}, { 1,  1,  1}},
    {{ 1, -1,  1}, {-1,  1,  1}, { 1,  1,  1},   { 1, -1,  1}, {-1, -1,  1}, {-1,  1,  1}},
    {{-1,  1, -1}, { 1,  1, -1}, {-1,  1,  1},   {-1,  1,  1}, { 1,  1, -1}, { 1,  1,  1}},
    {{-1, -1, -1}, {-1, -1,  1}, { 1, -1, -1},   { 1, -1, -1}, {-1, -1,  1}, { 1, -1,  1}},
};
// clang-format on

}  // namespace

SurfacePointer MakePlane() {
  Vec3 const normal(-1, 0, 0);
  NVertex const a{{0, -1, -1}, normal, {1, 1, 0}};
  NVertex const b{{0, -1, 1}, normal, {0, 1, 0}};
  NVertex const c{{0, 1, -1}, normal, {1, 0, 0}};
  NVertex const d{{0, 1, 1}, normal, {0, 0, 0}};
  NMesh mesh;
  mesh.AddTriangle(a, b, c);
  mesh.AddTriangle(b, d, c);
  return mesh.MakeSurfaceWithUVWs();
}

SurfacePointer MakeCube() {
  NMesh mesh;
  for (std::size_t face = 0; face != std::size(kCube); ++face) {
    Face const& at = kCube[face];
    Vec3 const& normal = kCubeNormals[face];
    for (int i : {0, 3})
      mesh.AddTriangle({at[i], normal}, {at[i + 1], normal}, {at[i + 2], normal});
  }
  return mesh.MakeSurface();
}

SurfacePointer MakeInwardCube() {
  NMesh mesh;
  for (Face const& at : kInwardCube) {
    for (int i : {0, 3}) {
      mesh.AddTriangle({at[i], -at[i]}, {at[i + 1], -at[i + 1]}, {at[i + 2], -at[i + 2]});
    }
  }
  return mesh.MakeSurface();
}

SurfacePointer MakeCubeFloor() {
  constexpr int kCells = 30;
  auto const at = [](int a, int b) {
    auto const along = [](int step) { return static_cast<float>(step) / 15 - 1; };
    return NVertex{{along(a), 0, along(b)}, {0, 1, 0}};
  };
  NMesh mesh;
  for (int a = 0; a != kCells; ++a) {
    for (int b = 0; b != kCells; ++b) {
      mesh.AddTriangle(at(a, b), at(a + 1, b), at(a, b + 1));
      mesh.AddTriangle(at(a, b + 1), at(a + 1, b), at(a + 1, b + 1));
    }
  }
  return mesh.MakeSurface();
}

}  // namespace corvanta::data::internal::detail
