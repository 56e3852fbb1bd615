#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <string>
#include <vector>

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/internal/detail/primitives/primitive.h"
#include "corvanta/data/structs/convert.h"

namespace corvanta::data::internal::detail {
namespace {

using domain::geometry::NSurface;
using testing::ElementsAre;
using testing::ElementsAreArray;
using VX_Math::Vec3;
using Surface = boost::intrusive_ptr<NSurface>;
using Point = std::array<double, 3>;
using Triangle = std::array<unsigned int, 3>;

constexpr double kPi = std::numbers::pi;

Vec3 At(std::vector<structs::XYZ> const& values, unsigned int i) {
  return structs::ToVec3(values.at(i));
}

Triangle TriangleAt(NSurface const& surface, std::size_t t) {
  auto const& indices = surface.GetIndices();
  return {indices.at(3 * t), indices.at(3 * t + 1), indices.at(3 * t + 2)};
}

/// Twice the area vector of a triangle.
Vec3 Cross(NSurface const& surface, Triangle const& t) {
  Vec3 const a = At(surface.GetCoords(), t[0]);
  return (At(surface.GetCoords(), t[1]) - a).Cross(At(surface.GetCoords(), t[2]) - a);
}

/// How many triangles of a run wind along the normals of all their vertices, and against all.
std::pair<int, int> CountWinding(NSurface const& surface, std::size_t first, std::size_t last) {
  std::pair<int, int> count{0, 0};
  for (std::size_t t = first; t != last; ++t) {
    Triangle const at = TriangleAt(surface, t);
    int along = 0;
    for (unsigned int const i : at) {
      float const dot = Cross(surface, at).Dot(At(surface.GetNormals(), i));
      along += dot > 0 ? 1 : dot < 0 ? -1 : 0;
    }
    count.first += along == 3;
    count.second += along == -3;
  }
  return count;
}

struct Row {
  char const* name;
  NPrimitive primitive;
  std::size_t vertices, indices;
  bool isExpanded, hasUVWs;
  int along, against;  // triangles; -1 where the mesh has both
};

constexpr Row kRows[] = {
    {"plane", NP_PLANE, 6, 6, true, true, 2, 0},
    {"cube", NP_CUBE, 36, 36, true, false, 12, 0},
    {"inward cube", NP_INWARD_CUBE, 36, 36, true, false, 12, 0},
    {"cube floor", NP_CUBE_FLOOR, 5400, 5400, true, false, 0, 1800},
    {"sphere", NP_SPHERE, 2880, 2880, true, true, 960, 0},
    {"inward sphere", NP_INWARD_SPHERE, 2880, 2880, true, false, 960, 0},
    {"sphere floor", NP_SPHERE_FLOOR, 2784, 2784, true, false, 0, 928},
    {"inward dome", NP_INWARD_DOME, 5952, 5952, true, false, 1984, 0},
    {"rod", NP_ROD, 8, 24, false, false, 8, 0},
    {"cone", NP_CONE, 13, 36, false, false, -1, -1},
    {"arrow", NP_ARROW, 50, 144, false, false, -1, -1},
    {"ring", NP_RING, 768, 4608, false, false, -1, -1},
    {"mace", NP_MACE, 32, 108, false, false, 24, 12},
    {"map planar", NP_MAP_PLANAR, 8, 24, false, false, 0, 8},
    {"map cylinder", NP_MAP_CYLINDER, 128, 408, false, false, -1, -1},
    {"map ribbon", NP_MAP_RIBBON, 64, 192, false, false, 64, 0},
    {"camera object", NP_CAMERA_OBJECT, 13, 48, false, false, -1, -1},
};

TEST(Primitive, HasItsCountsLayoutAndWinding) {
  for (Row const& row : kRows) {
    SCOPED_TRACE(row.name);
    Surface const surface = GetPrimitiveSurface(row.primitive);
    EXPECT_EQ(surface, GetPrimitiveSurface(row.primitive));
    EXPECT_EQ(surface->GetCoords().size(), row.vertices);
    EXPECT_EQ(surface->GetNormals().size(), row.vertices);
    ASSERT_EQ(surface->GetIndices().size(), row.indices);
    bool isExpanded = true;
    for (std::size_t i = 0; i != row.indices; ++i) {
      isExpanded = isExpanded && surface->GetIndices()[i] == i;
      ASSERT_LT(surface->GetIndices()[i], row.vertices);
    }
    EXPECT_EQ(isExpanded, row.isExpanded);
    EXPECT_EQ(surface->GetUVWsMap().size(), row.hasUVWs ? 1 : 0);
    EXPECT_EQ(surface->GetUVWs(domain::material::texture_mapping::NUVWID_PRIMITIVE) != nullptr,
              row.hasUVWs);
    if (row.along < 0) continue;
    EXPECT_EQ(CountWinding(*surface, 0, row.indices / 3), std::pair(row.along, row.against));
  }
}

/// Every edge of a mesh that closes is gone along once each way.
TEST(Primitive, SolidsClose) {
  for (NPrimitive const solid :
       {NP_CUBE, NP_INWARD_CUBE, NP_SPHERE, NP_INWARD_SPHERE, NP_INWARD_DOME}) {
    SCOPED_TRACE(solid);
    Surface const surface = GetPrimitiveSurface(solid);
    std::map<std::pair<std::array<long, 3>, std::array<long, 3>>, int> edges;
    auto const place = [&](unsigned int i) {
      Vec3 const at = At(surface->GetCoords(), i) * 1e5f;
      return std::array{std::lround(at.x), std::lround(at.y), std::lround(at.z)};
    };
    for (unsigned int i = 0; i != surface->GetIndices().size(); ++i) {
      auto const from = place(i);
      auto const to = place(i % 3 == 2 ? i - 2 : i + 1);
      ASSERT_NE(from, to);
      edges[{from, to}] += 1;
      edges[{to, from}] -= 10;
    }
    for (auto const& [edge, count] : edges) ASSERT_EQ(count, -9);
  }
}

/// A vertex of an expanded mesh worked out from its number alone.
struct Corner {
  Point position, normal;
};
using Rule = Corner (*)(unsigned int);

/// Vertex `v` of a round mesh: a fan of 32, bands whose triangles take the given corners, a fan.
/// `first` and `last` give for each corner of a fan: 0 the centre, 1 this spoke, 2 the next.
template <class At, class Pole>
Corner Round(unsigned int v, unsigned int rings, std::array<int, 3> first,
             std::array<std::array<int, 2>, 6> band, std::array<int, 3> last, At at, Pole pole) {
  unsigned int const t = v / 3;
  unsigned int const bands = 64 * (rings - 1);
  if (t >= 32 && t < 32 + bands) {
    unsigned int const quad = (t - 32) / 2;
    auto const [di, dr] = band[v % 3 + 3 * ((t - 32) % 2)];
    return at(quad % 32 + di, quad / 32 + 1 + dr);
  }
  bool const isFirst = t < 32;
  int const what = (isFirst ? first : last)[v % 3];
  if (what == 0) return pole(isFirst);
  return at((isFirst ? t : t - 32 - bands) + what - 1, isFirst ? 1 : rings);
}

Point Polar(double theta, double phi) {
  return {std::sin(theta) * std::cos(phi), std::cos(theta), std::sin(theta) * std::sin(phi)};
}
Point Times(Point p, double s) { return {s * p[0], s * p[1], s * p[2]}; }

Corner SphereRule(unsigned int v) {
  auto const at = [](int i, int j) {  // a quarter turn on, and the other way round
    Point const p = Polar(kPi * j / 16, kPi / 16 * i - kPi / 2);
    return Corner{p, p};
  };
  return Round(v, 15, {1, 0, 2}, {{{0, 0}, {1, 0}, {0, 1}, {0, 1}, {1, 0}, {1, 1}}}, {1, 2, 0}, at,
               [](bool top) {
                 Point const p{0, top ? 1.0 : -1.0, 0};
                 return Corner{p, p};
               });
}

constexpr std::array<std::array<int, 2>, 6> kInwardBand = {
    {{0, 0}, {1, 1}, {1, 0}, {0, 0}, {0, 1}, {1, 1}}};

Corner InwardSphereRule(unsigned int v) {
  auto const at = [](int i, int j) {
    Point const p = Polar(kPi * j / 16, kPi / 16 * i);
    return Corner{p, Times(p, -1)};
  };
  return Round(v, 15, {0, 1, 2}, kInwardBand, {0, 2, 1}, at, [](bool top) {
    return Corner{{0, top ? 1.0 : -1.0, 0}, {0, top ? -1.0 : 1.0, 0}};
  });
}

Corner InwardDomeRule(unsigned int v) {
  auto const at = [](int i, int ring) {
    // The floor's normals are those of the sphere below it, at the same distance from the axis.
    double const radius = 2 - ring / 16.0;
    double const theta = ring < 16 ? kPi * ring / 32 : kPi - std::asin(radius);
    Point const sphere = Polar(theta, kPi / 16 * i);
    Point const normal{-sphere[0], 0.15 - sphere[1], -sphere[2]};
    double const length = std::hypot(normal[0], normal[1], normal[2]);
    Point const position{sphere[0], ring < 16 ? sphere[1] : 0, sphere[2]};
    return Corner{position, Times(normal, 1 / length)};
  };
  return Round(v, 31, {0, 1, 2}, kInwardBand, {0, 2, 1}, at, [](bool top) {
    return Corner{{0, top ? 1.0 : 0.0, 0}, {0, top ? -1.0 : 1.0, 0}};
  });
}

Corner SphereFloorRule(unsigned int v) {
  auto const at = [](int i, int k) {
    Point const p = Polar(kPi / 2, -kPi / 16 * i);
    return Corner{{p[0] * k / 15, 0, p[2] * k / 15}, {0, 1, 0}};
  };
  return Round(v, 15, {0, 2, 1}, {{{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}}}, {}, at,
               [](bool) {
                 return Corner{{0, 0, 0}, {0, 1, 0}};
               });
}

Corner CubeFloorRule(unsigned int v) {
  unsigned int const cell = v / 6;
  int const da[6] = {0, 1, 0, 0, 1, 1};
  int const db[6] = {0, 0, 1, 1, 0, 1};
  double const x = cell / 30 + da[v % 6];
  double const z = cell % 30 + db[v % 6];
  return {{x / 15 - 1, 0, z / 15 - 1}, {0, 1, 0}};
}

TEST(Primitive, GridsStandVertexForVertex) {
  constexpr std::pair<NPrimitive, Rule> kRules[] = {{NP_SPHERE, SphereRule},
                                                    {NP_INWARD_SPHERE, InwardSphereRule},
                                                    {NP_INWARD_DOME, InwardDomeRule},
                                                    {NP_SPHERE_FLOOR, SphereFloorRule},
                                                    {NP_CUBE_FLOOR, CubeFloorRule}};
  for (auto const& [primitive, rule] : kRules) {
    SCOPED_TRACE(primitive);
    Surface const surface = GetPrimitiveSurface(primitive);
    for (unsigned int v = 0; v != surface->GetCoords().size(); ++v) {
      Corner const expected = rule(v);
      for (int axis = 0; axis != 3; ++axis) {
        ASSERT_NEAR(surface->GetCoords()[v][axis], expected.position[axis], 1e-6) << v;
        ASSERT_NEAR(surface->GetNormals()[v][axis], expected.normal[axis], 1e-6) << v;
      }
    }
  }
}

TEST(Primitive, TheSphereIsUnrolledWithoutATear) {
  Surface const surface = GetPrimitiveSurface(NP_SPHERE);
  auto const& uvws = *surface->GetUVWs(domain::material::texture_mapping::NUVWID_PRIMITIVE);
  for (unsigned int v = 0; v != 2880; ++v) {
    bool const isTop = v < 96;
    bool const isPole = isTop ? v % 3 == 1 : v >= 2784 && v % 3 == 2;
    if (isPole) {
      unsigned int const i = (isTop ? v : v - 2784) / 3;
      EXPECT_NEAR(uvws[v].u, isTop ? 1 - i / 31.0 : i / 31.0, 1e-6);
    } else {
      Point const p = Polar(kPi * uvws[v].v, -2 * kPi * uvws[v].u - kPi / 2);
      for (int axis = 0; axis != 3; ++axis)
        ASSERT_NEAR(surface->GetCoords()[v][axis], p[axis], 2e-6);
      // No triangle spans more than a step, but to a pole.
      bool const isNextPole = isTop ? v % 3 == 0 : v >= 2784 && v % 3 == 1;
      float const next = uvws[v % 3 == 2 ? v - 2 : v + 1].u;
      ASSERT_TRUE(isNextPole || std::abs(uvws[v].u - next) <= 1 / 32.0f) << v;
    }
    EXPECT_EQ(uvws[v].w, 0);
  }
}

TEST(Primitive, TheCubesShowTheirFacesOutwardsAndInwards) {
  Surface const cube = GetPrimitiveSurface(NP_CUBE);
  Surface const inward = GetPrimitiveSurface(NP_INWARD_CUBE);
  constexpr int kFaces[6][2] = {{0, -1}, {2, -1}, {0, 1}, {2, 1}, {1, 1}, {1, -1}};
  for (unsigned int v = 0; v != 36; ++v) {
    auto const& [axis, side] = kFaces[v / 6];
    Vec3 normal;
    normal[axis] = static_cast<float>(side);
    EXPECT_EQ(At(cube->GetNormals(), v), normal);
    EXPECT_EQ(cube->GetCoords()[v][axis], side);
    EXPECT_EQ(inward->GetCoords()[v][axis], side);
    EXPECT_EQ(At(inward->GetNormals(), v), -At(inward->GetCoords(), v));
    EXPECT_EQ(std::abs(inward->GetCoords()[v].x), 1);
    // Both start a triangle at the same corner, and the inward one turns the other way.
    if (v % 3 == 0) {
      EXPECT_EQ(At(cube->GetCoords(), v), At(inward->GetCoords(), v)) << v;
      EXPECT_EQ(At(cube->GetCoords(), v + 1), At(inward->GetCoords(), v + 2)) << v;
    }
  }
}

TEST(Primitive, TubesAndFansGoRoundTheXAxis) {
  struct Tube {
    NPrimitive primitive;
    unsigned int sides;
    double radius;
  };
  for (Tube const& tube : {Tube{NP_ROD, 4, 0.01}, {NP_ARROW, 12, 0.02}, {NP_MACE, 12, 0.02}}) {
    Surface const surface = GetPrimitiveSurface(tube.primitive);
    for (unsigned int v = 0; v != 2 * tube.sides; ++v) {
      double const angle = 2 * kPi * v / tube.sides;
      EXPECT_EQ(surface->GetCoords()[v].x, v < tube.sides ? 0 : 1);
      EXPECT_NEAR(surface->GetCoords()[v].y, tube.radius * std::sin(angle), 1e-6);
      EXPECT_NEAR(surface->GetNormals()[v].y, std::sin(angle), 1e-6);
      EXPECT_NEAR(surface->GetNormals()[v].z, std::cos(angle), 1e-6);
    }
    EXPECT_EQ(CountWinding(*surface, 0, 2 * tube.sides).first, 2 * static_cast<int>(tube.sides));
  }
  EXPECT_THAT(GetPrimitiveSurface(NP_ROD)->GetIndices(),
              ElementsAre(0, 4, 1, 1, 4, 5, 1, 5, 2, 2, 5, 6, 2, 6, 3, 3, 6, 7, 0, 3, 7, 0, 7, 4));

  Surface const arrow = GetPrimitiveSurface(NP_ARROW);
  EXPECT_EQ(TriangleAt(*arrow, 22), (Triangle{0, 11, 23}));
  EXPECT_EQ(TriangleAt(*arrow, 23), (Triangle{0, 23, 12}));
  EXPECT_EQ(TriangleAt(*arrow, 24), (Triangle{24, 25, 26}));
  EXPECT_EQ(TriangleAt(*arrow, 35), (Triangle{24, 36, 25}));
  EXPECT_EQ(TriangleAt(*arrow, 46), (Triangle{37, 48, 49}));
  EXPECT_EQ(TriangleAt(*arrow, 47), (Triangle{37, 49, 38}));
  EXPECT_EQ(At(arrow->GetCoords(), 24), Vec3(1.2f, 0, 0));
  for (unsigned int v = 25; v != 37; ++v) {
    EXPECT_NEAR(At(arrow->GetCoords(), v).Length(), std::hypot(1, 0.05), 1e-6);
    EXPECT_EQ(At(arrow->GetCoords(), v), At(arrow->GetCoords(), v + 13));
    EXPECT_EQ(At(arrow->GetNormals(), v), At(arrow->GetNormals(), v - 25));
    EXPECT_EQ(At(arrow->GetNormals(), v + 13), Vec3(-1, 0, 0));
  }

  Surface const cone = GetPrimitiveSurface(NP_CONE);
  EXPECT_EQ(TriangleAt(*cone, 10), (Triangle{0, 11, 12}));
  EXPECT_EQ(TriangleAt(*cone, 11), (Triangle{0, 12, 1}));
  EXPECT_EQ(At(cone->GetCoords(), 4), Vec3(1, 1, At(cone->GetCoords(), 4).z));
  EXPECT_EQ(CountWinding(*cone, 0, 12).second, 0);
}

TEST(Primitive, TheRingIsATorus) {
  Surface const ring = GetPrimitiveSurface(NP_RING);
  for (unsigned int v = 0; v != 768; ++v) {
    double const t = 2 * kPi * (v / 12) / 64;
    Vec3 const at = At(ring->GetCoords(), v);
    EXPECT_NEAR(at.x, 0.02 * std::cos(2 * kPi * (v % 12) / 12), 1e-6);
    // From the middle of the tube to the vertex.
    Vec3 const middle(0, static_cast<float>(std::cos(t)), static_cast<float>(std::sin(t)));
    Vec3 const normal = At(ring->GetNormals(), v);
    EXPECT_NEAR((at - middle - normal * 0.02f).Length(), 0, 1e-6);
    EXPECT_NEAR(normal.Length(), 1, 1e-6);
    EXPECT_NEAR(normal.Dot(Vec3(0, -middle.z, middle.y)), 0, 1e-6);
  }
  EXPECT_EQ(TriangleAt(*ring, 0), (Triangle{0, 1, 12}));
  EXPECT_EQ(TriangleAt(*ring, 21), (Triangle{11, 22, 23}));
  EXPECT_EQ(TriangleAt(*ring, 1512), (Triangle{756, 757, 0}));
  EXPECT_EQ(TriangleAt(*ring, 1534), (Triangle{756, 11, 0}));
  EXPECT_EQ(TriangleAt(*ring, 1535), (Triangle{756, 767, 11}));
  double area = 0;
  for (std::size_t t = 0; t != 1536; ++t) area += Cross(*ring, TriangleAt(*ring, t)).Length() / 2;
  // Of a prism of twelve sides bent to a circle of 64 edges.
  double const perimeter = 24 * 0.02 * std::sin(kPi / 12);
  EXPECT_NEAR(area, perimeter * 128 * std::sin(kPi / 64), 1e-3 * area);
}

TEST(Primitive, OutlinesStand) {
  Surface const mace = GetPrimitiveSurface(NP_MACE);
  Vec3 flux;
  double volume = 0;
  for (std::size_t t = 24; t != 36; ++t) {
    flux += Cross(*mace, TriangleAt(*mace, t));
    volume +=
        Cross(*mace, TriangleAt(*mace, t)).Dot(At(mace->GetCoords(), TriangleAt(*mace, t)[0]));
  }
  EXPECT_NEAR(flux.Length(), 0, 1e-7);  // it closes
  EXPECT_NEAR(volume / 6, -0.001, 1e-8);
  for (unsigned int v = 24; v != 32; ++v) {
    Vec3 const outwards = (At(mace->GetCoords(), v) - Vec3(1.05f, 0, 0)) * 2;
    EXPECT_NEAR((outwards - At(mace->GetNormals(), v)).Length(), 0, 1e-6);
  }

  Surface const planar = GetPrimitiveSurface(NP_MAP_PLANAR);
  double area = 0;
  for (std::size_t t = 0; t != 8; ++t) {
    EXPECT_LT(Cross(*planar, TriangleAt(*planar, t)).y, 0);
    area -= Cross(*planar, TriangleAt(*planar, t)).y / 2;
  }
  EXPECT_NEAR(area, 1.2 * 1.2 - 1, 1e-6);

  Surface const cylinder = GetPrimitiveSurface(NP_MAP_CYLINDER);
  EXPECT_EQ(TriangleAt(*cylinder, 1), (Triangle{33, 1, 32}));
  EXPECT_EQ(TriangleAt(*cylinder, 62), (Triangle{31, 63, 0}));
  EXPECT_EQ(TriangleAt(*cylinder, 127), (Triangle{96, 64, 127}));
  EXPECT_THAT(std::vector(cylinder->GetIndices().end() - 24, cylinder->GetIndices().end()),
              ElementsAre(0, 64, 31, 31, 64, 95, 8, 72, 39, 39, 72, 103, 16, 80, 47, 47, 80, 111,
                          24, 88, 55, 55, 88, 119));
  Surface const ribbon = GetPrimitiveSurface(NP_MAP_RIBBON);
  EXPECT_EQ(TriangleAt(*ribbon, 62), (Triangle{31, 0, 63}));
  EXPECT_EQ(TriangleAt(*ribbon, 63), (Triangle{63, 0, 32}));
  for (unsigned int v = 0; v != 128; ++v) {
    Point const p = Polar(kPi / 2, 2 * kPi * v / 32);
    Vec3 const at = At(cylinder->GetCoords(), v);
    double const radius = v / 32 % 2 == 0 ? 0.5 : 0.48;
    EXPECT_NEAR(std::hypot(at.x - radius * p[0], at.z - radius * p[2]), 0, 1e-6);
    EXPECT_EQ(at.y, v < 64 ? 0.5f : -0.5f);
    EXPECT_EQ(At(cylinder->GetNormals(), v), Vec3(0, 2 * at.y, 0));
    if (v >= 64) continue;
    EXPECT_EQ(ribbon->GetCoords()[v].y, v < 32 ? 0.025f : -0.025f);
    EXPECT_NEAR(ribbon->GetCoords()[v].z, 0.5 * p[2], 1e-6);
    EXPECT_NEAR(ribbon->GetNormals()[v].x, p[0], 1e-6);
    EXPECT_NEAR(ribbon->GetNormals()[v].z, p[2], 1e-6);
  }

  Surface const camera = GetPrimitiveSurface(NP_CAMERA_OBJECT);
  for (unsigned int v = 0; v != 8; ++v) {
    Vec3 const corner(v % 2 == 0 ? -0.5f : 0.5f, v / 2 % 2 == 0 ? 0.5f : -0.5f, v < 4 ? -1 : 1);
    EXPECT_EQ(At(camera->GetCoords(), v), corner);
    EXPECT_EQ(At(camera->GetNormals(), v), Vec3(corner.x, corner.y, corner.z / 2));
    if (v >= 4) continue;
    EXPECT_EQ(At(camera->GetCoords(), 9 + v), Vec3(corner.x, corner.y, -1.4f));
    EXPECT_EQ(At(camera->GetNormals(), 9 + v), Vec3(2 * corner.x, 2 * corner.y, 0));
  }
  EXPECT_THAT(camera->GetIndices(),
              ElementsAreArray({0, 3, 1, 0, 2, 3, 4,  5, 6, 5,  7, 6,  0,  1, 4,  1,
                                5, 4, 1, 3, 5, 3, 7,  5, 0, 4,  6, 0,  6,  2, 2,  7,
                                3, 7, 2, 6, 8, 9, 10, 8, 9, 11, 8, 11, 12, 8, 12, 10}));
}

}  // namespace
}  // namespace corvanta::data::internal::detail
