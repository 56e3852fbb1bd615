#include <cmath>

#include "corvanta/data/internal/detail/primitives/NMesh.h"
#include "corvanta/data/internal/detail/primitives/meshes.h"

namespace corvanta::data::internal::detail {

using VX_Math::Vec3;

namespace {

constexpr unsigned int kStacks = 16;

/// A shell about the y axis, seen from inside: a fan from `top` to the first ring, bands between
/// the rings, and a fan from the last ring to `bottom`. `at(i, ring)` gives the vertices, rings
/// counting from 1.
template <class At>
void AddInwardShell(NMesh& mesh, NVertex const& top, unsigned int rings, NVertex const& bottom,
                    At const& at) {
  for (unsigned int i = 0; i != kSegments; ++i) mesh.AddTriangle(top, at(i, 1), at(i + 1, 1));
  for (unsigned int ring = 1; ring != rings; ++ring) {
    for (unsigned int i = 0; i != kSegments; ++i) {
      mesh.AddTriangle(at(i, ring), at(i + 1, ring + 1), at(i + 1, ring));
      mesh.AddTriangle(at(i, ring), at(i, ring + 1), at(i + 1, ring + 1));
    }
  }
  for (unsigned int i = 0; i != kSegments; ++i) {
    mesh.AddTriangle(bottom, at(i + 1, rings), at(i, rings));
  }
}

/// A vertex of the dome at `position`, its normal as if it stood at `onSphere`: from there to the
/// point that all of them look at.
NVertex DomeVertex(Vec3 const& position, Vec3 const& onSphere) {
  Vec3 normal = Vec3(0, 0.15f, 0) - onSphere;
  normal.Normalize();
  return {position, normal};
}

}  // namespace

SurfacePointer MakeSphere() {
  auto const at = [](unsigned int i, unsigned int j) {
    NTurn const across = CircleStep(i, kSegments);
    NTurn const down = HalfTurns(j, kStacks);
    Vec3 const position(down.sin * across.sin, down.cos, -(down.sin * across.cos));
    float const u = 1 - static_cast<float>(i) / kSegments;  // 0 where the seam closes
    return NVertex{position, position, {u, static_cast<float>(j) / kStacks, 0}};
  };
  // The poles' coordinates run in steps of their own, and at the bottom the other way.
  auto const step = [](unsigned int i) { return static_cast<float>(i) / (kSegments - 1); };
  NMesh mesh;
  for (unsigned int i = 0; i != kSegments; ++i) {
    NVertex const pole{{0, 1, 0}, {0, 1, 0}, {1 - step(i), 0, 0}};
    mesh.AddTriangle(at(i, 1), pole, at(i + 1, 1));
  }
  for (unsigned int j = 1; j != kStacks - 1; ++j) {
    for (unsigned int i = 0; i != kSegments; ++i) {
      mesh.AddTriangle(at(i, j), at(i + 1, j), at(i, j + 1));
      mesh.AddTriangle(at(i, j + 1), at(i + 1, j), at(i + 1, j + 1));
    }
  }
  for (unsigned int i = 0; i != kSegments; ++i) {
    NVertex const pole{{0, -1, 0}, {0, -1, 0}, {step(i), 1, 0}};
    mesh.AddTriangle(at(i, kStacks - 1), at(i + 1, kStacks - 1), pole);
  }
  return mesh.MakeSurfaceWithUVWs();
}

SurfacePointer MakeInwardSphere() {
  NMesh mesh;
  AddInwardShell(mesh, {{0, 1, 0}, {0, -1, 0}}, kStacks - 1, {{0, -1, 0}, {0, 1, 0}},
                 [](unsigned int i, unsigned int j) {
                   NTurn const across = CircleStep(i, kSegments);
                   NTurn const down = HalfTurns(j, kStacks);
                   Vec3 const position(down.sin * across.cos, down.cos, down.sin * across.sin);
                   return NVertex{position, -position};
                 });
  return mesh.MakeSurface();
}

SurfacePointer MakeSphereFloor() {
  constexpr unsigned int kRings = 15;
  auto const at = [](unsigned int i, unsigned int k) {
    NTurn const across = CircleStep(i, kSegments);
    float const radius = static_cast<float>(k) / kRings;
    return NVertex{{radius * across.cos, 0, -(radius * across.sin)}, {0, 1, 0}};
  };
  NMesh mesh;
  for (unsigned int i = 0; i != kSegments; ++i) {
    mesh.AddTriangle(at(0, 0), at(i + 1, 1), at(i, 1));
  }
  for (unsigned int k = 1; k != kRings; ++k) {
    for (unsigned int i = 0; i != kSegments; ++i) {
      mesh.AddTriangle(at(i, k), at(i + 1, k), at(i + 1, k + 1));
      mesh.AddTriangle(at(i, k), at(i + 1, k + 1), at(i, k + 1));
    }
  }
  return mesh.MakeSurface();
}

SurfacePointer MakeInwardDome() {
  NMesh mesh;
  AddInwardShell(mesh, {{0, 1, 0}, {0, -1, 0}}, 2 * kStacks - 1, {{0, 0, 0}, {0, 1, 0}},
                 [](unsigned int i, unsigned int ring) {
                   NTurn const across = CircleStep(i, kSegments);
                   if (ring < kStacks) {
                     NTurn const down = HalfTurns(ring, 2 * kStacks);
                     Vec3 const position(down.sin * across.cos, down.cos, down.sin * across.sin);
                     return DomeVertex(position, position);
                   }
                   float const radius = 2 - static_cast<float>(ring) / kStacks;
                   Vec3 const position(radius * across.cos, 0, radius * across.sin);
                   Vec3 bulge(position.x, -std::sqrt(1 - radius * radius), position.z);
                   bulge.Normalize();
                   return DomeVertex(position, bulge);
                 });
  return mesh.MakeSurface();
}

}  // namespace corvanta::data::internal::detail
