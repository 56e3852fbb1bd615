#include <bit>

#include "tests/support/test.h"

namespace corvanta::mapping {
namespace {

using namespace data::domain::operators::projector;
using data::operators::projector::NProjector;
using data::operators::projector::NVertices;
using testing::FloatEq;

std::array<float, 3> Project(NProjector const& projector, Vec3 const& p, Vec3 const& n = {}) {
  std::array<float, 3> c{-9, -9, -9};
  projector.ProjectWithNormal(p.x, p.y, p.z, n.x, n.y, n.z, c[0], c[1], c[2]);
  return c;
}

TEST(Projectors, GiveTheClosedForms) {
  EXPECT_THAT(Project(NPlaneProjector(), {0.3f, 0.7f, 0.2f}), ElementsAre(0.3f, 0.2f, 0));

  NCylinderProjector const cylinder;
  EXPECT_THAT(Project(cylinder, {0, 2, 1}), ElementsAre(0.5f, 1.5f, 1));
  EXPECT_THAT(Project(cylinder, {-1, 0, 0}), ElementsAre(0.75f, -0.5f, 1));
  EXPECT_THAT(Project(cylinder, {1, 0, 0}), ElementsAre(0.25f, -0.5f, 1));
  EXPECT_THAT(Project(cylinder, {3, 0, -4})[2], FloatEq(5));
  EXPECT_GT(Project(cylinder, {-1e-3f, 0, -1})[0], 0.999f);
  EXPECT_LT(Project(cylinder, {1e-3f, 0, -1})[0], 0.001f);

  NSphereProjector const sphere;
  EXPECT_THAT(Project(sphere, {0, 1, 0}), ElementsAre(testing::_, 1, 1));
  EXPECT_THAT(Project(sphere, {0, -1, 0}), ElementsAre(testing::_, 0, 1));
  EXPECT_THAT(Project(sphere, {-2, 0, 0}), ElementsAre(0.75f, 0.5f, 2));
  // To the last bit, with angles in double precision.
  struct Row {
    NProjector const* projector;
    Vec3 point;
    std::array<float, 3> expected;
  };
  for (Row const& row : std::vector<Row>{
           {&cylinder, {0.3f, 0.7f, -0.4f}, {0.102416404f, 0.199999988f, 0.5f}},
           {&cylinder, {-1.7f, -0.2f, 0.9f}, {0.672507524f, -0.699999988f, 1.92353845f}},
           {&cylinder, {0.01f, -5.3f, -0.002f}, {0.218583524f, -5.80000019f, 0.010198039f}},
           {&cylinder, {123.4f, 56.7f, -89.1f}, {0.150469825f, 56.2000008f, 152.205032f}},
           {&sphere, {0.3f, 0.7f, -0.4f}, {0.102416404f, 0.802568436f, 0.860232532f}},
           {&sphere, {-1.7f, -0.2f, 0.9f}, {0.672507524f, 0.46702224f, 1.93390799f}},
           {&sphere, {0.01f, -5.3f, -0.002f}, {0.218583524f, 0.00061249733f, 5.3000102f}},
           {&sphere, {123.4f, 56.7f, -89.1f}, {0.150469825f, 0.613508701f, 162.423096f}}}) {
    EXPECT_EQ(Project(*row.projector, row.point), row.expected);
  }
  EXPECT_TRUE(cylinder.HasSeam() && sphere.HasSeam());
  EXPECT_FALSE(NPlaneProjector().HasSeam() || NBoxProjector().HasSeam() ||
               NTriplanarProjector().HasSeam());
}

TEST(Projectors, ChooseTheFaceByTheNormal) {
  NBoxProjector const box;
  NTriplanarProjector const triplanar;
  Vec3 const p(-1, 2, -3);
  for (float const side : {1.0f, -1.0f}) {
    EXPECT_THAT(Project(box, p, {side, 0.5f, 0}), ElementsAre(-3, -2, 1));
    EXPECT_THAT(Project(triplanar, p, {side, 0.5f, 0}), ElementsAre(-3, 2, 1));
    EXPECT_THAT(Project(box, p, {1, side, 0}), ElementsAre(-1, -3, 2)) << "y goes before x";
    EXPECT_THAT(Project(triplanar, p, {1, side, 0}), ElementsAre(-1, -3, 2));
    EXPECT_THAT(Project(box, p, {1, 1, side}), ElementsAre(-1, -2, 3)) << "z goes before both";
    EXPECT_THAT(Project(triplanar, p, {1, 1, side}), ElementsAre(2, -1, 3));
  }
}

TEST(Projectors, GiveTangentFrames) {
  auto const expect = [](NProjector const& projector, Vec3 const& p, Vec3 const& n,
                         Vec3 const& tangent, Vec3 const& binormal) {
    Vec3 t, b;
    projector.ComputeTangentFrame(p.x, p.y, p.z, n.x, n.y, n.z, t.x, t.y, t.z, b.x, b.y, b.z);
    EXPECT_LT((t - tangent).Length() + (b - binormal).Length(), 1e-6f) << typeid(projector).name();
  };
  expect(NPlaneProjector(), {}, {0, -1, 0}, {1, 0, 0}, {0, 0, -1});
  expect(NPlaneProjector(), {}, {1, 0, 0}, {0, 0, 1}, {0, -1, 0});
  expect(NCylinderProjector(), {0, 0, 2}, {0, 0, -1}, {-1, 0, 0}, {0, -1, 0});
  expect(NSphereProjector(), {0, 5, 0}, {0, 0, 1}, {0, 1, 0}, {-1, 0, 0});  // on the axis
  expect(NTriplanarProjector(), {}, {-1, 0, 0}, {0, 0, 1}, {0, -1, 0});
  expect(NBoxProjector(), {}, {-1, 0, 0}, {0, 0, 1}, {0, 1, 0});
  expect(NBoxProjector(), {}, {0, 0.6f, 0.8f}, {1, 0, 0}, {0, 0.8f, -0.6f});
  // Just beside where a binormal is turned.
  expect(NCylinderProjector(), {1, 0, 0}, {-0.02f, 0.9998f, 0}, {0, 0, 1}, {-0.9998f, -0.02f, 0});
  expect(NCylinderProjector(), {1, 0, 0}, {0.02f, 0.9998f, 0}, {0, 0, 1}, {0.9998f, -0.02f, 0});
  expect(NPlaneProjector(), {}, {0, -0.02f, 0.9998f}, {1, 0, 0}, {0, -0.9998f, -0.02f});
  expect(NPlaneProjector(), {}, {0, 0.02f, 0.9998f}, {1, 0, 0}, {0, 0.9998f, -0.02f});
  // Worked out by cross products in double precision.
  // clang-format off
  expect(NPlaneProjector(), {1, 2, 3}, {0.48f, -0.6f, 0.64f}, {0.8772685f, 0.3282917f, -0.3501779f}, {0, -0.64f, -0.6f});
  expect(NCylinderProjector(), {1, -2, 3}, {0.48f, 0.6f, -0.64f}, {-0.8403263f, 0.5239444f, -0.1390468f}, {-0.2518964f, -0.6045513f, -0.7556891f});
  expect(NSphereProjector(), {-1, 2, 3}, {0.36f, 0.48f, 0.8f}, {-0.9136549f, 0.3548907f, 0.1982103f}, {-0.1887717f, -0.8022796f, 0.566315f});
  expect(NTriplanarProjector(), {1, 2, 3}, {0.48f, 0.36f, -0.8f}, {-0.1852185f, 0.9329523f, 0.3086975f}, {-0.8f, 0, -0.48f});
  expect(NTriplanarProjector(), {1, 2, 3}, {0.36f, -0.8f, 0.48f}, {0.9329523f, 0.3086975f, -0.1852185f}, {0, -0.48f, -0.8f});
  expect(NBoxProjector(), {1, 2, 3}, {0.48f, 0.36f, -0.8f}, {0.8772685f, -0.196975f, 0.4377223f}, {0, -0.8f, -0.36f});
  expect(NBoxProjector(), {1, 2, 3}, {-0.8f, 0.36f, 0.48f}, {0.4377223f, -0.196975f, 0.8772685f}, {0.36f, 0.8f, 0});
  // clang-format on
}

/// By `kind`: of ordinary size, a small integer, one of those that are treated apart, any bits.
float MakeFloat(std::mt19937_64& random, std::size_t kind) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
  constexpr float kApart[] = {0.0f,       -0.0f, 1.0f,   -1.0f,           kInfinity,
                              -kInfinity, kNaN,  1e-45f, 1.17549435e-38f, 3e38f};
  auto const bits = static_cast<std::uint32_t>(random());
  switch (kind) {
    case 0:
      return std::ldexp(static_cast<float>(static_cast<std::int32_t>(bits)), -31);
    case 1:
      return static_cast<float>(static_cast<int>(bits % 256) - 128);
    case 2:
      return kApart[bits % std::size(kApart)];
    default:
      return std::bit_cast<float>(bits);
  }
}

bool AreSame(float a, float b) {
  return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b) ||
         (std::isnan(a) && std::isnan(b));
}

TEST(Projectors, GiveAMeshWhatTheyGiveEachVertex) {
  constexpr std::size_t kCount = 500'037;
  std::uint64_t const seed = std::random_device()();
  SCOPED_TRACE(seed);
  std::mt19937_64 random(seed);
  std::vector<float> coords(3 * kCount), normals(3 * kCount);
  // Long runs of a kind, so that there are blocks of vertices without exceptions.
  for (std::size_t i = 0; i != coords.size(); ++i) {
    std::size_t const run = i / 1000;
    coords[i] = MakeFloat(random, run % 7 < 4 ? 0 : run % 7 - 3);
    normals[i] = MakeFloat(random, run % 5 < 2 ? 0 : run % 5 - 1);
  }
  NVertices vertices{kCount, coords.data(), normals.data(), {}, {}};
  NPlaneProjector const plane;
  NCylinderProjector const cylinder;
  NSphereProjector const sphere;
  NTriplanarProjector const triplanar;
  NBoxProjector const box;
  std::vector<UVW> all(kCount);
  for (bool const isMoved : {false, true}) {
    if (isMoved) {
      vertices.toProjector = {0.5f, 0.25f, 0, 0, -0.3f, 2, 0.1f, 0.125f, 0, 1, 1, 0, 5, 6, 7, 2};
      vertices.normalToProjector = {1, 0.5f, 0, 0, 0, 3, 0.1f, 0, 1, 0, 1, 0, 0, 0, 0, 1};
    }
    for (NProjector const* const projector :
         std::initializer_list<NProjector const*>{&plane, &cylinder, &sphere, &triplanar, &box}) {
      projector->ProjectVertices(vertices, all.data());
      for (std::size_t i = 0; i != kCount; ++i) {
        Vec3 p(coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]);
        Vec3 n(normals[3 * i], normals[3 * i + 1], normals[3 * i + 2]);
        vertices.toProjector.MultVecMatrix(p, p);
        vertices.normalToProjector.MultDirMatrix(n, n);
        n.Normalize();
        auto const one = Project(*projector, p, n);
        ASSERT_TRUE(AreSame(one[0], all[i].u) && AreSame(one[1], all[i].v) &&
                    AreSame(one[2], all[i].w))
            << "vertex " << i << " by " << typeid(*projector).name();
      }
    }
  }
}

}  // namespace
}  // namespace corvanta::mapping
