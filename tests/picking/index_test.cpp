#include "corvanta/data/operators/ray_picker/detail/NTriangleIndex.h"
#include "corvanta/data/operators/ray_picker/detail/least_hit.h"
#include "tests/support/test.h"

namespace corvanta::test {
namespace {

using data::operators::ray_picker::detail::FindLeastHitExhaustively;
using data::operators::ray_picker::detail::NTriangleIndex;

/// A soup of triangles of very different sizes, some of them degenerate, twice there, huge, not
/// finite or with indices out of range.
Pointer<NPolygonSurface> MakeSoup(std::mt19937& random, int count) {
  std::uniform_real_distribution<float> any(-1, 1);
  std::vector<float> coords;
  std::vector<unsigned> indices;
  for (int i = 0; i != count; ++i) {
    float const size = std::pow(10.0f, -3 * std::abs(any(random)));
    float const center[3] = {any(random), any(random), any(random)};
    auto const first = static_cast<unsigned>(coords.size() / 3);
    for (int corner = 0; corner != 3; ++corner) {
      for (float const c : center) coords.push_back(c + size * any(random));
    }
    if (i % 50 == 7) std::copy_n(coords.end() - 9, 3, coords.end() - 3);  // an edge of length 0
    if (i % 50 == 8) std::fill(coords.end() - 6, coords.end(), coords.back());
    if (i % 200 == 9) coords.end()[-1] = 3e9f;
    if (i % 200 == 10) coords.end()[-2] = std::numeric_limits<float>::quiet_NaN();
    if (i % 200 == 11) coords.end()[-3] = std::numeric_limits<float>::infinity();
    indices.insert(indices.end(), {first, first + 1, first + 2});
    if (i % 30 == 12) indices.insert(indices.end(), {first, first + 1, first + 2});
    if (i % 100 == 13) indices.insert(indices.end(), {first, 0xFFFFFFFFu, first + 2});
  }
  indices.push_back(0);  // a last run of one
  auto surface = New<NPolygonSurface>();
  surface->Assign(coords, coords, indices, {});
  return surface;
}

Vec3 Direction(std::mt19937& random) {
  std::uniform_real_distribution<float> any(-1, 1);
  switch (random() % 8) {
    case 0:
      return {0, 0, any(random)};
    case 1:
      return {-0.0f, any(random), 0};
    case 2:
      return {any(random) * 1e-6f, any(random), any(random)};
    case 3:
      return Vec3(any(random), any(random), any(random)) * 1e4f;
    default:
      return {any(random), any(random), any(random)};
  }
}

TEST(TriangleIndex, EqualsTheExhaustiveLoopInEveryMode) {
  Random random;
  std::uniform_real_distribution<float> any(-1, 1);
  int hits = 0;
  for (int mesh = 0; mesh != 6; ++mesh) {
    auto const surface = MakeSoup(random, 100 + mesh * 400);
    NTriangleIndex const index(*surface);
    for (int i = 0; i != 1500; ++i) {
      Vec3 const o = Vec3(any(random), any(random), any(random)) * (i % 3 == 0 ? 30.0f : 2.0f);
      Vec3 const d =
          i % 2 == 0 ? Direction(random) : Vec3(any(random), any(random), any(random)) - o;
      ASSERT_TRUE(NTriangleIndex::CanServe(o, d) || d == Vec3());
      if (d == Vec3()) continue;
      auto const compare = [&](auto const& accept) {
        double const expected = FindLeastHitExhaustively(*surface, o, d, accept);
        ASSERT_EQ(index.FindLeast(o, d, accept), expected) << "mesh " << mesh << ", ray " << i;
        if (expected < std::numeric_limits<double>::max()) ++hits;
      };
      compare([](float) { return true; });
      compare([](float t) { return t > 0.5; });
      compare([&](float t) { return (o + d * t).x > 0; });
    }
  }
  EXPECT_GT(hits, 3000);
}

/// Rays that lie in a triangle's plane give the plain test phantom hits far off the triangle. Those
/// alone may be missing from the index, and never the other way round.
TEST(TriangleIndex, MissesOnlyPhantoms) {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> any(-1, 1);
  auto const surface = MakeSoup(random, 1000);
  NTriangleIndex const index(*surface);
  auto const& coords = surface->GetCoords();
  int phantoms = 0, agreed = 0;
  for (unsigned i = 0; i + 2 < 3000; i += 3) {
    Vec3 const a(coords[i].x, coords[i].y, coords[i].z);
    Vec3 const e1 = Vec3(coords[i + 1].x, coords[i + 1].y, coords[i + 1].z) - a;
    Vec3 const e2 = Vec3(coords[i + 2].x, coords[i + 2].y, coords[i + 2].z) - a;
    Vec3 const o = a + e1 * any(random) + e2 * any(random) * 3.0f;
    Vec3 const d = e1 * any(random) + e2 * any(random);
    if (!NTriangleIndex::CanServe(o, d)) continue;
    auto const all = [](float) { return true; };
    double const expected = FindLeastHitExhaustively(*surface, o, d, all);
    double const found = index.FindLeast(o, d, all);
    EXPECT_GE(found, expected);
    ++(found == expected ? agreed : phantoms);
  }
  RecordProperty("phantoms", phantoms);
  EXPECT_GT(agreed, 500);
}

/// A mesh of bumps, some of its triangles moved by `shift`.
void Assign(NPolygonSurface& surface, float shift, unsigned missing = 0) {
  constexpr unsigned kSide = 60;
  std::vector<float> coords;
  std::vector<unsigned> indices;
  for (unsigned i = 0; i != kSide * kSide; ++i) {
    auto const x = static_cast<float>(i % kSide) / 30 - 1,
               y = static_cast<float>(i / kSide) / 30 - 1;
    float const z = 0.3f * std::sin(7 * x + 3 * shift) * std::cos(5 * y);
    coords.insert(coords.end(), {x + (i % 3 == 0 ? 0.1f * shift : 0), y, z});
    if (i % kSide == kSide - 1 || i / kSide == kSide - 1) continue;
    indices.insert(indices.end(), {i, i + 1, i + kSide, i + 1, i + kSide + 1, i + kSide});
  }
  indices.resize(indices.size() - 3 * missing);
  surface.Assign(coords, coords, indices, {});
}

TEST(TriangleIndex, TakesOverOtherCoordinates) {
  Random random;
  std::uniform_real_distribution<float> any(-1, 1);
  auto const surface = New<NPolygonSurface>();
  Assign(*surface, 0);
  NTriangleIndex index(*surface);
  auto const all = [](float) { return true; };
  int hits = 0;
  for (int step = 1; step != 8; ++step) {
    Assign(*surface, 0.1f * static_cast<float>(step));
    ASSERT_TRUE(index.Refit(*surface));
    for (int i = 0; i != 300; ++i) {
      Vec3 const o(any(random), any(random), 4 * any(random));
      Vec3 const d = Vec3(any(random), any(random), any(random)) - o;
      double const expected = FindLeastHitExhaustively(*surface, o, d, all);
      ASSERT_EQ(index.FindLeast(o, d, all), expected) << "step " << step << ", ray " << i;
      if (expected < std::numeric_limits<double>::max()) ++hits;
    }
  }
  EXPECT_GT(hits, 500);
  auto const assignWith = [&](float x) {
    std::vector<float> coords;
    for (XYZ const& point : surface->GetCoords()) {
      coords.insert(coords.end(), {point.x, point.y, point.z});
    }
    for (std::size_t i = 0; i < coords.size(); i += 33) coords[i] = x * static_cast<float>(i % 7);
    surface->Assign(coords, coords, surface->GetIndices(), {});
  };
  assignWith(20);
  EXPECT_FALSE(index.Refit(*surface)) << "triangles all over the place";
  NTriangleIndex another(*surface);
  assignWith(static_cast<float>(kNaN));
  EXPECT_FALSE(another.Refit(*surface)) << "not finite";
}

TEST(PickIndex, IsKeptWhileOnlyCoordinatesChange) {
  using data::operators::ray_picker::detail::FindLeastHit;
  using data::operators::ray_picker::detail::NPickIndex;
  NDocument document;
  auto const geometry = document.GetGeometries().CreateNode();
  auto const surface = New<NPolygonSurface>();
  Assign(*surface, 0);
  geometry->AddSurface(*surface);
  auto const all = [](float) { return true; };
  Vec3 const o(0.31f, 0.17f, 3), d(0, 0.1f, -1);
  // How many picks loop over all triangles before the index serves.
  auto const countLoops = [&] {
    for (int picks = 0;; ++picks) {
      EXPECT_EQ(FindLeastHit(*geometry, *surface, o, d, all),
                FindLeastHitExhaustively(*surface, o, d, all));
      auto const* const index = NPickIndex::Query(*geometry);
      if (index != nullptr && index->GetIndex() != nullptr) return picks;
    }
  };
  EXPECT_EQ(countLoops(), 8);
  EXPECT_EQ(countLoops(), 0);
  Assign(*surface, 0.2f);
  EXPECT_EQ(NPickIndex::Query(*geometry)->GetIndex(), nullptr);
  EXPECT_EQ(countLoops(), 2);
  Assign(*surface, 0.2f, 1);
  EXPECT_EQ(countLoops(), 8) << "other triangles";
  auto const second = New<NPolygonSurface>();
  geometry->AddSurface(*second);
  EXPECT_EQ(countLoops(), 8) << "another surface";
}

TEST(TriangleIndex, ServesOnlyRaysWithinItsBounds) {
  float const nan = static_cast<float>(kNaN);
  for (auto const& [o, d] : std::vector<std::pair<Vec3, Vec3>>{{{2e9f, 0, 0}, {1, 0, 0}},
                                                               {{0, 0, 0}, {0, 0, 0}},
                                                               {{0, nan, 0}, {1, 0, 0}},
                                                               {{0, 0, 0}, {nan, 1, 0}},
                                                               {{0, 0, 0}, {1e20f, 0, 0}},
                                                               {{0, 0, 0}, {1e-20f, 0, 0}}}) {
    EXPECT_FALSE(NTriangleIndex::CanServe(o, d));
  }
  EXPECT_TRUE(NTriangleIndex::CanServe({1e8f, 0, 0}, {0, 0, -1}));
}

TEST(TriangleIndex, OfAThousandTrianglesAtOnePoint) {
  std::vector<float> coords;
  std::vector<unsigned> indices;
  for (unsigned i = 0; i != 3000; ++i) {
    coords.insert(coords.end(), {i % 3 == 1 ? 1.0f : 0.0f, i % 3 == 2 ? 1.0f : 0.0f, 0});
    indices.push_back(i);
  }
  auto surface = New<NPolygonSurface>();
  surface->Assign(coords, coords, indices, {});
  NTriangleIndex const index(*surface);
  EXPECT_EQ(index.GetTriangleCount(), 1000u);
  EXPECT_EQ(index.FindLeast({0.2f, 0.2f, 5}, {0, 0, -1}, [](float) { return true; }), 5.0);
}

}  // namespace
}  // namespace corvanta::test
