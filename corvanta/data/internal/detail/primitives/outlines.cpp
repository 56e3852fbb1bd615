#include "corvanta/data/internal/detail/primitives/NMesh.h"
#include "corvanta/data/internal/detail/primitives/meshes.h"

namespace corvanta::data::internal::detail {

using VX_Math::Vec3;

namespace {

/// A circle about the y axis; `normalAt` gives the normals from sine and cosine.
template <class NormalAt>
void AddCircle(NMesh& mesh, float radius, float y, NormalAt const& normalAt) {
  for (unsigned int i = 0; i != kSegments; ++i) {
    NTurn const turn = CircleStep(i, kSegments);
    mesh.AddVertex({radius * turn.cos, y, radius * turn.sin}, normalAt(turn));
  }
}

}  // namespace

SurfacePointer MakeMapPlanar() {
  constexpr float kCorners[4][2] = {{-1, 1}, {-1, -1}, {1, -1}, {1, 1}};
  constexpr unsigned int kTriangles[8][3] = {
      {0, 4, 5}, {0, 5, 1}, {1, 5, 6}, {1, 6, 2}, {7, 2, 6}, {7, 3, 2}, {3, 4, 0}, {7, 4, 3},
  };
  NMesh mesh;
  for (float const half : {0.5f, 0.6f}) {
    for (auto const& [x, z] : kCorners) mesh.AddVertex({half * x, 0, half * z}, {0, 1, 0});
  }
  for (auto const& [a, b, c] : kTriangles) mesh.AddTriangle(a, b, c);
  return mesh.MakeSurface();
}

SurfacePointer MakeMapCylinder() {
  NMesh mesh;
  for (float const y : {0.5f, -0.5f}) {
    for (float const radius : {0.5f, 0.48f}) {
      AddCircle(mesh, radius, y, [&](NTurn const&) { return Vec3(0, 2 * y, 0); });
    }
  }
  for (unsigned int const outer : {0u, 2 * kSegments}) {
    unsigned int const inner = outer + kSegments;
    for (unsigned int i = 0; i != kSegments; ++i) {
      unsigned int const next = (i + 1) % kSegments;
      mesh.AddTriangle(outer + i, inner + i, outer + next);
      mesh.AddTriangle(inner + next, outer + next, inner + i);
    }
  }
  // Ribs, each to the point 31 further on: the outer one that closes the first circle, and inner
  // ones for the other three.
  for (unsigned int const k : {0u, 8u, 16u, 24u}) {
    mesh.AddTriangle(k, k + 64, k + 31);
    mesh.AddTriangle(k + 31, k + 64, k + 95);
  }
  return mesh.MakeSurface();
}

SurfacePointer MakeMapRibbon() {
  NMesh mesh;
  for (float const y : {0.025f, -0.025f}) {
    AddCircle(mesh, 0.5f, y, [](NTurn const& turn) { return Vec3(turn.cos, 0, turn.sin); });
  }
  for (unsigned int i = 0; i != kSegments; ++i) {
    unsigned int const next = (i + 1) % kSegments;
    mesh.AddTriangle(i, next, kSegments + i);
    mesh.AddTriangle(kSegments + i, next, kSegments + next);
  }
  return mesh.MakeSurface();
}

SurfacePointer MakeCameraObject() {
  // clang-format off
  constexpr Vec3 kVertices[13][2] = {
      {{-0.5f,  0.5f, -1},    {-0.5f,  0.5f, -0.5f}},
      {{ 0.5f,  0.5f, -1},    { 0.5f,  0.5f, -0.5f}},
      {{-0.5f, -0.5f, -1},    {-0.5f, -0.5f, -0.5f}},
      {{ 0.5f, -0.5f, -1},    { 0.5f, -0.5f, -0.5f}},
      {{-0.5f,  0.5f,  1},    {-0.5f,  0.5f,  0.5f}},
      {{ 0.5f,  0.5f,  1},    { 0.5f,  0.5f,  0.5f}},
      {{-0.5f, -0.5f,  1},    {-0.5f, -0.5f,  0.5f}},
      {{ 0.5f, -0.5f,  1},    { 0.5f, -0.5f,  0.5f}},
      {{ 0,     0,    -0.9f}, { 0,     0,     1}},
      {{-0.5f,  0.5f, -1.4f}, {-1,     1,     0}},
      {{ 0.5f,  0.5f, -1.4f}, { 1,     1,     0}},
      {{-0.5f, -0.5f, -1.4f}, {-1,    -1,     0}},
      {{ 0.5f, -0.5f, -1.4f}, { 1,    -1,     0}},
  };
  // clang-format on
  constexpr unsigned int kTriangles[16][3] = {
      {0, 3, 1}, {0, 2, 3}, {4, 5, 6}, {5, 7, 6}, {0, 1, 4},  {1, 5, 4},  {1, 3, 5},   {3, 7, 5},
      {0, 4, 6}, {0, 6, 2}, {2, 7, 3}, {7, 2, 6}, {8, 9, 10}, {8, 9, 11}, {8, 11, 12}, {8, 12, 10},
  };
  NMesh mesh;
  for (auto const& [position, normal] : kVertices) mesh.AddVertex(position, normal);
  for (auto const& [a, b, c] : kTriangles) mesh.AddTriangle(a, b, c);
  return mesh.MakeSurface();
}

}  // namespace corvanta::data::internal::detail
