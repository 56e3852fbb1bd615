#include "corvanta/renderer/scene/solid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/support/ball.h"

namespace corvanta::render_tests {
namespace {

using data::structs::XYZ;

struct Mesh {
  std::vector<XYZ> coords;
  std::vector<unsigned> indices;
};

Mesh MakeBall(float radius, float x) {
  support::Ball const ball(12, 8);
  Mesh mesh;
  for (std::size_t i = 0; i != ball.coords.size(); i += 3) {
    mesh.coords.push_back(
        {radius * ball.coords[i] + x, radius * ball.coords[i + 1], radius * ball.coords[i + 2]});
  }
  mesh.indices.assign(ball.indices.begin(), ball.indices.end());
  return mesh;
}

Mesh Inverted(Mesh mesh) {
  for (std::size_t i = 0; i != mesh.indices.size(); i += 3) {
    std::swap(mesh.indices[i], mesh.indices[i + 1]);
  }
  return mesh;
}

Mesh Joined(Mesh a, Mesh const& b) {
  for (unsigned const index : b.indices) {
    a.indices.push_back(index + static_cast<unsigned>(a.coords.size()));
  }
  a.coords.insert(a.coords.end(), b.coords.begin(), b.coords.end());
  return a;
}

/// Each triangle with corners of its own.
Mesh Split(Mesh const& mesh) {
  Mesh split;
  for (unsigned const index : mesh.indices) {
    split.indices.push_back(static_cast<unsigned>(split.coords.size()));
    split.coords.push_back(mesh.coords[index]);
  }
  return split;
}

Mesh WithoutATriangle(Mesh mesh) {
  // The last may be one without area.
  mesh.indices.erase(mesh.indices.begin() + 180, mesh.indices.begin() + 183);
  return mesh;
}

/// A bottle's dent: what is in front of it isn't always seen from outside alone.
Mesh Dented(Mesh mesh) {
  for (XYZ& v : mesh.coords) {
    if (v.y > 0.5f) v.y = 0.2f - 3 * (v.y - 0.5f);
  }
  return mesh;
}

Mesh Flat(Mesh mesh) {
  for (XYZ& v : mesh.coords) v.z = 0.0f;
  return mesh;
}

TEST(Solid, IsClosedAndSeenFromOutsideAlone) {
  Mesh const ball = MakeBall(1, 0);
  struct Row {
    char const* name;
    Mesh mesh;
    bool isSolid;
  };
  Row const rows[] = {
      {"ball", ball, true},
      {"split", Split(ball), true},
      {"away from the origin", MakeBall(1, 50), true},
      {"two", Joined(ball, MakeBall(0.5f, 9)), true},
      {"none", {}, false},
      {"inside out", Inverted(ball), false},
      {"a hollow", Joined(ball, Inverted(MakeBall(0.5f, 0))), false},
      {"twice the same", Joined(ball, ball), false},
      {"open", WithoutATriangle(ball), false},
      {"dented", Dented(ball), false},
      {"flat", Flat(ball), false},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(renderer::IsSolid(row.mesh.coords, row.mesh.indices), row.isSolid) << row.name;
  }
}

}  // namespace
}  // namespace corvanta::render_tests
