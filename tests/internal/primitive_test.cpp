#include <numbers>

#include "corvanta/data/internal/detail/primitives/primitive.h"
#include "tests/support/test.h"

namespace corvanta::data::internal::detail {
namespace {

using domain::geometry::NSurface;
using structs::ToVec3;

/// What a mesh adds up to. Each vertex and index counts with its place, modulo 31, plus 1; of a
/// vector the components count once, twice and three times.
struct Row {
  NPrimitive primitive;
  std::size_t vertices, indices;  // as many where each triangle has its own
  int along, against;             // triangles that wind so to the normals of all their vertices
  double points, normals, uvws;
  std::size_t places;
};

// Worked out in double precision, from rules for each mesh that were written down on their own.
// clang-format off
constexpr Row kRows[] = {
    {NP_PLANE        ,    6,    6,    2,    0,    17.000,    -21.000,    24.000,        70},
    {NP_CUBE         ,   36,   36,   12,    0,   466.000,    526.000,     0.000,     10425},
    {NP_INWARD_CUBE  ,   36,   36,   12,    0,   488.000,   -488.000,     0.000,     10425},
    {NP_CUBE_FLOOR   , 5400, 5400,    0, 1800,  -175.000, 172650.000,     0.000, 233263600},
    {NP_SPHERE       , 2880, 2880,  960,    0,  -248.861,   -248.861, 69162.687,  66441796},
    {NP_INWARD_SPHERE, 2880, 2880,  960,    0,  -249.510,    249.510,     0.000,  66441796},
    {NP_SPHERE_FLOOR , 2784, 2784,    0,  928,   -52.133,  88938.000,     0.000,  61997171},
    {NP_INWARD_DOME  , 5952, 5952, 1984,    0, 59084.097,  27174.636,     0.000, 283838976},
    {NP_ROD          ,    8,   24,    8,    0,    25.800,    -20.000,     0.000,      1172},
    {NP_CONE         ,   13,   36,   12,    0,    27.215,    -63.785,     0.000,      2508},
    {NP_ARROW        ,   50,  144,   36,   12,   620.430,     -7.967,     0.000,     52412},
    {NP_MACE         ,   32,  108,   24,   12,   425.939,   -126.369,     0.000,     28143},
    {NP_RING         ,  768, 4608,  704,  832,  -159.078,    -79.457,     0.000,  28258832},
    {NP_MAP_PLANAR   ,    8,   24,    0,    8,     4.400,     72.000,     0.000,      1118},
    {NP_MAP_CYLINDER ,  128,  408,   64,   64,  -958.038,     -8.000,     0.000,    411516},
    {NP_MAP_RIBBON   ,   64,  192,   64,    0,  -512.188,  -1024.277,     0.000,     96888},
    {NP_CAMERA_OBJECT,   13,   48,    3,   13,  -178.500,     39.000,     0.000,      3133},
};
// clang-format on

int CountWinding(NSurface const& surface, int sense) {
  int count = 0;
  for (std::size_t i = 0; i != surface.GetIndices().size(); i += 3) {
    unsigned int const* const at = &surface.GetIndices()[i];
    auto const point = [&](int corner) { return ToVec3(surface.GetCoords()[at[corner]]); };
    Vec3 const cross = (point(1) - point(0)).Cross(point(2) - point(0));
    int agreeing = 0;
    for (int corner = 0; corner != 3; ++corner) {
      agreeing += cross.Dot(ToVec3(surface.GetNormals()[at[corner]])) * sense > 1e-9f;
    }
    count += agreeing == 3;
  }
  return count;
}

TEST(Primitive, StandsToTheLastIndex) {
  for (Row const& row : kRows) {
    SCOPED_TRACE(row.primitive);
    auto const surface = GetPrimitiveSurface(row.primitive);
    EXPECT_EQ(surface, GetPrimitiveSurface(row.primitive));
    ASSERT_EQ(surface->GetCoords().size(), row.vertices);
    ASSERT_EQ(surface->GetIndices().size(), row.indices);
    EXPECT_EQ(surface->GetUVWsMap().size(), row.uvws == 0 ? 0 : 1);
    auto const* const uvws = surface->GetUVWs(domain::material::texture_mapping::NUVWID_PRIMITIVE);
    Row sums{};
    for (std::size_t v = 0; v != row.vertices; ++v) {
      double const weight = static_cast<double>(v % 31 + 1);
      Vec3 const factors(1, 2, 3);
      sums.points += weight * ToVec3(surface->GetCoords()[v]).Dot(factors);
      sums.normals += weight * ToVec3(surface->GetNormals()[v]).Dot(factors);
      if (uvws) sums.uvws += weight * ((*uvws)[v].u + 2 * (*uvws)[v].v + 3 * (*uvws)[v].w);
    }
    for (std::size_t i = 0; i != row.indices; ++i) {
      ASSERT_LT(surface->GetIndices()[i], row.vertices);
      sums.places += (i % 31 + 1) * surface->GetIndices()[i];
    }
    EXPECT_NEAR(sums.points, row.points, 0.02);
    EXPECT_NEAR(sums.normals, row.normals, 0.02);
    EXPECT_NEAR(sums.uvws, row.uvws, 0.02);
    EXPECT_EQ(sums.places, row.places);
    EXPECT_EQ(CountWinding(*surface, 1), row.along);
    EXPECT_EQ(CountWinding(*surface, -1), row.against);
  }
}

TEST(Primitive, RoundOnesLieOnTheirSurfaces) {
  for (auto const& [primitive, sense] : {std::pair{NP_SPHERE, 1.0f}, {NP_INWARD_SPHERE, -1.0f}}) {
    auto const surface = GetPrimitiveSurface(primitive);
    for (std::size_t v = 0; v != surface->GetCoords().size(); ++v) {
      Vec3 const at = ToVec3(surface->GetCoords()[v]);
      EXPECT_NEAR(at.Length(), 1, 1e-6);
      EXPECT_EQ(ToVec3(surface->GetNormals()[v]) * sense, at);
    }
  }
  auto const ring = GetPrimitiveSurface(NP_RING);
  for (std::size_t v = 0; v != ring->GetCoords().size(); ++v) {
    double const t = std::numbers::pi * static_cast<double>(v / 12) / 32;
    // From the middle of the tube to the vertex, across the way that the tube goes.
    Vec3 const middle(0, static_cast<float>(std::cos(t)), static_cast<float>(std::sin(t)));
    Vec3 const normal = ToVec3(ring->GetNormals()[v]);
    EXPECT_NEAR((ToVec3(ring->GetCoords()[v]) - middle - normal * 0.02f).Length(), 0, 1e-6);
    EXPECT_NEAR(normal.Length(), 1, 1e-6);
    EXPECT_NEAR(normal.Dot(Vec3(0, -middle.z, middle.y)), 0, 1e-6);
  }
}

}  // namespace
}  // namespace corvanta::data::internal::detail
