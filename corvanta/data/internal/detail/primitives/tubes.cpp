#include "corvanta/data/internal/detail/primitives/NMesh.h"
#include "corvanta/data/internal/detail/primitives/meshes.h"

namespace corvanta::data::internal::detail {

using VX_Math::Vec3;

namespace {

constexpr unsigned int kSides = 12;
constexpr float kShaftRadius = 0.02f;

Vec3 RoundX(NTurn const& turn, float x, float radius) {
  return {x, radius * turn.sin, radius * turn.cos};
}

/// An open tube about the x axis from 0 to 1, in a mesh that is empty.
void AddTube(NMesh& mesh, unsigned int sides, float radius) {
  for (float const x : {0.0f, 1.0f}) {
    for (unsigned int k = 0; k != sides; ++k) {
      NTurn const turn = CircleStep(k, sides);
      mesh.AddVertex(RoundX(turn, x, radius), RoundX(turn, 0, 1));
    }
  }
  unsigned int const last = sides - 1;
  for (unsigned int k = 0; k != last; ++k) {
    mesh.AddTriangle(k, sides + k, k + 1);
    mesh.AddTriangle(k + 1, sides + k, sides + k + 1);
  }
  mesh.AddTriangle(0, last, sides + last);
  mesh.AddTriangle(0, sides + last, sides);
}

/// From the vertex `centre` to the twelve behind it.
void AddFan(NMesh& mesh, unsigned int centre) {
  for (unsigned int k = 1; k != kSides; ++k) mesh.AddTriangle(centre, centre + k, centre + k + 1);
  mesh.AddTriangle(centre, centre + kSides, centre + 1);
}

}  // namespace

SurfacePointer MakeRod() {
  NMesh mesh;
  AddTube(mesh, 4, 0.01f);
  return mesh.MakeSurface();
}

SurfacePointer MakeCone() {
  NMesh mesh;
  mesh.AddVertex({0, 0, 0}, {-1, 0, 0});
  for (unsigned int k = 0; k != kSides; ++k) {
    NTurn const turn = CircleStep(k, kSides);
    mesh.AddVertex(RoundX(turn, 1, 1), RoundX(turn, 0, 1));
  }
  AddFan(mesh, 0);
  return mesh.MakeSurface();
}

SurfacePointer MakeArrow() {
  constexpr float kHeadRadius = 0.05f;
  constexpr unsigned int kTip = 2 * kSides;
  constexpr unsigned int kBase = kTip + 1 + kSides;
  NMesh mesh;
  AddTube(mesh, kSides, kShaftRadius);
  mesh.AddVertex({1.2f, 0, 0}, {1, 0, 0});
  for (unsigned int k = 0; k != kSides; ++k) {
    NTurn const turn = CircleStep(k, kSides);
    mesh.AddVertex(RoundX(turn, 1, kHeadRadius), RoundX(turn, 0, 1));
  }
  AddFan(mesh, kTip);
  mesh.AddVertex({1, 0, 0}, {-1, 0, 0});
  for (unsigned int k = 0; k != kSides; ++k) {
    mesh.AddVertex(RoundX(CircleStep(k, kSides), 1, kHeadRadius), {-1, 0, 0});
  }
  AddFan(mesh, kBase);
  return mesh.MakeSurface();
}

SurfacePointer MakeMace() {
  // Round the near end, then round the far one; y and z of the corners by sign.
  constexpr float kCorners[4][2] = {{1, 1}, {-1, 1}, {-1, -1}, {1, -1}};
  constexpr unsigned int kBox[12][3] = {
      {24, 25, 26}, {26, 27, 24}, {24, 28, 29}, {25, 24, 29}, {24, 27, 28}, {27, 31, 28},
      {27, 26, 31}, {30, 31, 26}, {25, 30, 26}, {25, 29, 30}, {29, 28, 31}, {29, 31, 30},
  };
  NMesh mesh;
  AddTube(mesh, kSides, kShaftRadius);
  for (bool const isFar : {false, true}) {
    for (auto const& [y, z] : kCorners) {
      mesh.AddVertex({isFar ? 1.1f : 1.0f, 0.05f * y, 0.05f * z},
                     {isFar ? 0.1f : -0.1f, 0.1f * y, 0.1f * z});
    }
  }
  for (auto const& [a, b, c] : kBox) mesh.AddTriangle(a, b, c);
  return mesh.MakeSurface();
}

SurfacePointer MakeRing() {
  constexpr unsigned int kStations = 64;
  NMesh mesh;
  for (unsigned int i = 0; i != kStations; ++i) {
    NTurn const station = CircleStep(i, kStations);
    for (unsigned int j = 0; j != kSides; ++j) {
      NTurn const point = CircleStep(j, kSides);
      float const radius = 1 + kShaftRadius * point.sin;
      mesh.AddVertex({kShaftRadius * point.cos, radius * station.cos, radius * station.sin},
                     {point.cos, point.sin * station.cos, point.sin * station.sin});
    }
  }
  for (unsigned int i = 0; i != kStations; ++i) {
    unsigned int const a = kSides * i;
    unsigned int const b = kSides * ((i + 1) % kStations);
    unsigned int const last = kSides - 1;
    for (unsigned int j = 0; j != last; ++j) {
      mesh.AddTriangle(a + j, a + j + 1, b + j);
      mesh.AddTriangle(a + j + 1, b + j, b + j + 1);
    }
    mesh.AddTriangle(a, b + last, b);
    mesh.AddTriangle(a, a + last, b + last);
  }
  return mesh.MakeSurface();
}

}  // namespace corvanta::data::internal::detail
