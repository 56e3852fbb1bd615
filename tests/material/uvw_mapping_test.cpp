#include "tests/support/test.h"

namespace corvanta::data::domain::material::texture_mapping {
namespace {

NUVWMappingType const kFlat{1};

class UVWMapping : public testing::Test {
 protected:
  Pointer<NPolygonSurface> surface{new NPolygonSurface};
  std::vector<float> coords, normals;
  std::vector<UVW> uvws;
  std::vector<XYZ> tangents, binormals;

  void AddVertex(Vec3 const& point, Vec3 const& normal, UVW const& uvw) {
    coords.insert(coords.end(), {point.x, point.y, point.z});
    normals.insert(normals.end(), {normal.x, normal.y, normal.z});
    uvws.push_back(uvw);
  }
  void Clear() {
    coords.clear();
    normals.clear();
    uvws.clear();
  }
  void Compute(std::vector<unsigned int> const& indices) {
    ASSERT_TRUE(surface->Assign(coords, normals, indices, {{NUVWID_FLAT, uvws}}));
    tangents.clear();
    binormals.clear();
    NUVWMapping(kFlat).ComputeTangents(*surface, tangents, binormals);
  }
};

void ExpectXYZ(XYZ const& actual, Vec3 const& expected, float tolerance = 0.0f) {
  for (unsigned int i : {0, 1, 2}) EXPECT_NEAR(actual[i], expected[static_cast<int>(i)], tolerance);
}

TEST_F(UVWMapping, LooksTheFlatSetUpFirst) {
  struct Row {
    char const* name;
    std::vector<unsigned int> ids;  // of the sets that the surface has; u is the id
    unsigned int type;
    float found;  // negative: nothing, one zero a vertex
  };
  Row const rows[] = {
      {"flat before own", {0, 1, 7}, 7, 1},      {"own", {0, 7}, 7, 7},
      {"built-in", {0, 7}, 0x10000000, 0},       {"built-in, flat first", {0, 1}, 0x10000000, 1},
      {"flagged", {0, 7}, 0x10000007, 7},        {"all other bits count", {0, 7}, 0x20000007, -1},
      {"no primitive set for flat", {0}, 1, -1}, {"none at all", {}, 0x10000000, -1},
  };
  for (Row const& row : rows) {
    SCOPED_TRACE(row.name);
    NSurface::UVWsMap sets;
    for (unsigned int id : row.ids) {
      sets[NUVWMappingID{id}].assign(2, {static_cast<float>(id), 2, 3});
    }
    surface->Assign({0, 0, 0, 1, 1, 1}, {0, 0, 1, 0, 0, 1}, {}, sets);
    NUVWMapping const mapping(NUVWMappingType{row.type});
    std::vector<UVW> found(5, {9, 9, 9});
    mapping.ComputeTextureCoords(*surface, found);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[1].u, row.found < 0 ? 0.0f : row.found);
    EXPECT_EQ(found[1].w, row.found < 0 ? 0.0f : 3.0f);
    EXPECT_EQ(mapping.GetType(), NTMT_UVW);

    // Without a set the tangents are only made as long as the coordinates.
    tangents.assign(1, {4, 5, 6});
    binormals.assign(3, {4, 5, 6});
    mapping.ComputeTangents(*surface, tangents, binormals);
    ASSERT_TRUE(tangents.size() == 2 && binormals.size() == 2);
    if (row.found < 0) {
      ExpectXYZ(tangents[0], Vec3(4, 5, 6));
      ExpectXYZ(tangents[1], Vec3());
      ExpectXYZ(binormals[1], Vec3(4, 5, 6));
    }
  }
}

/// Plane patches with u and v along two perpendicular directions of the plane, of any scale.
TEST_F(UVWMapping, TangentsFollowUAndBinormalsV) {
  std::mt19937 random(20);
  std::uniform_real_distribution<float> any(-1.0f, 1.0f);
  for (int trial = 0; trial != 100; ++trial) {
    SCOPED_TRACE(trial);
    Clear();
    Quaternion const turn(Vec3(any(random), any(random), any(random)), 3 * any(random));
    Matrix const m(turn);
    Vec3 const u(m[0][0], m[0][1], m[0][2]), v(m[1][0], m[1][1], m[1][2]);
    Vec3 const normal(m[2][0], m[2][1], m[2][2]);
    float const scale = std::exp2(4 * any(random));
    for (int i = 0; i != 12; ++i) {
      float const s = any(random);
      float const t = any(random);
      AddVertex((u * s + v * t) * scale, normal, {s + 0.5f, t - 0.25f, any(random)});
    }
    Compute({0, 1, 2, 1, 2, 3, 4, 5, 6, 6, 7, 8, 9, 0, 4, 11, 10, 9});
    for (std::size_t k = 0; k != tangents.size(); ++k) {
      ExpectXYZ(tangents[k], u, 1e-3f);
      ExpectXYZ(binormals[k], v, 1e-3f);
    }
  }
}

/// The rounding of every step shows in the last digits, which come from another computation.
TEST_F(UVWMapping, RoundsStepByStep) {
  AddVertex(Vec3(0.1f, 0.2f, 0.3f), Vec3(0.36f, 0.48f, 0.8f), {0.11f, 0.13f, 0});
  AddVertex(Vec3(1.7f, 0.4f, -0.6f), Vec3(0.1f, 0.7f, 0.7f), {0.83f, 0.29f, 0});
  AddVertex(Vec3(0.3f, 2.9f, 0.8f), Vec3(0.6f, 0.0f, 0.8f), {0.37f, 0.91f, 0});
  AddVertex(Vec3(-1.1f, 0.7f, 2.3f), Vec3(0.3f, -0.2f, 0.9f), {0.07f, 0.59f, 0});
  Compute({0, 1, 2, 0, 2, 3});
  Vec3 const expected[][2] = {
      {{0.365853071f, 0.71617794f, -0.594340563f}, {-0.858225822f, 0.506645083f, 0.0822145939f}},
      {{0.894380569f, 0.245890617f, -0.373659253f}, {-0.433684915f, 0.6634323f, -0.601477325f}},
      {{0.585057378f, 0.682032645f, -0.438793033f}, {-0.545626104f, 0.731321752f, 0.409219593f}},
      {{0.594557464f, 0.803815126f, -0.0195602421f}, {-0.719521582f, 0.540969789f, 0.360056043f}},
  };
  for (std::size_t k = 0; k != 4; ++k) {
    ExpectXYZ(tangents[k], expected[k][0]);
    ExpectXYZ(binormals[k], expected[k][1]);
  }
}

TEST_F(UVWMapping, SmallDeterminantsCountWithAScaleOfOne) {
  float const kEdge = 0.0001f;
  for (float const determinant : {kEdge, std::nextafter(kEdge, 1.0f), -kEdge, 0.0f}) {
    SCOPED_TRACE(determinant);
    Clear();
    Vec3 const normal(0, 0, 1);
    // The first triangle's v grows along x, with a determinant on or beside the edge; the second
    // one's along y, by one a unit.
    AddVertex(Vec3(0, 0, 0), normal, {0, 0, 0});
    AddVertex(Vec3(0, 1, 0), normal, {determinant, 0, 0});
    AddVertex(Vec3(1, 0, 0), normal, {0, 1, 0});
    AddVertex(Vec3(1, 0, 0), normal, {1, 0, 0});
    AddVertex(Vec3(0, 1, 0), normal, {0, 1, 0});
    Compute({0, 1, 2, 0, 3, 4});
    float const x = std::fabs(determinant) > kEdge ? 1.0f : determinant;
    Vec3 expected(x, 1, 0);
    expected.Normalize();
    ExpectXYZ(binormals[0], expected, 1e-6f);
    ExpectXYZ(tangents[0], Vec3(expected.y, -expected.x, 0), 1e-6f);
  }
}

TEST_F(UVWMapping, TrianglesWithoutVerticesAreAbsent) {
  AddVertex(Vec3(0, 0, 0), Vec3(0, 0, 1), {0, 0, 0});
  AddVertex(Vec3(1, 0, 0), Vec3(0, 0, 1), {1, 0, 0});
  AddVertex(Vec3(0, 1, 0), Vec3(0, 0, 1), {0, 1, 0});
  AddVertex(Vec3(5, 5, 5), Vec3(0, 1, 0), {1, 1, 0});
  Compute({0, 1, 2});
  for (std::size_t k = 0; k != 3; ++k) {
    ExpectXYZ(tangents[k], Vec3(1, 0, 0));
    ExpectXYZ(binormals[k], Vec3(0, 1, 0));
  }
  ExpectXYZ(tangents[3], Vec3());
  ExpectXYZ(binormals[3], Vec3());

  Compute({0, 1, 4, 0xFFFFFFFF, 1, 2, 0, 1, 2, 0, 0xFFFFFFFE, 2, 2, 3});
  ExpectXYZ(tangents[0], Vec3(1, 0, 0));
  ExpectXYZ(binormals[2], Vec3(0, 1, 0));
  ExpectXYZ(tangents[3], Vec3());
  Compute({3, 2});
  ExpectXYZ(tangents[3], Vec3());

  // What the binormals hold already counts in.
  tangents.clear();
  binormals.assign(1, {1, 0, 0});
  surface->Assign(coords, normals, {}, {{NUVWID_FLAT, uvws}});
  NUVWMapping(kFlat).ComputeTangents(*surface, tangents, binormals);
  ExpectXYZ(tangents[0], Vec3(0, -1, 0));
  ExpectXYZ(binormals[0], Vec3(1, 0, 0));
}

}  // namespace
}  // namespace corvanta::data::domain::material::texture_mapping
