#include <bit>

#include "tests/mapping/oracle.h"
#include "tests/mapping/world.h"

namespace corvanta::mapping {
namespace {

using data::domain::material::texture_mapping::NProjectionMapping;
using data::domain::projection::NProjectionNodeError;
using data::domain::projection::NUVWO_VUW;
using data::structs::UVW;
using data::structs::XYZ;
using oracle::Mesh;
using testing::SizeIs;

constexpr wchar_t const* kMethods[] = {L"plane", L"cylinder", L"sphere", L"triplanar", L"box"};

/// What a mapping gives for a mesh.
struct Mapped {
  bool isMapped = false;
  std::vector<UVW> coords{};
  std::vector<unsigned int> indices{};
  std::vector<unsigned int> vertexMap{};
  std::vector<XYZ> tangents{};
  std::vector<XYZ> binormals{};

  std::vector<float> GetU() const {
    std::vector<float> u;
    for (UVW const& c : coords) u.push_back(c.u);
    return u;
  }
};

NProjectionMapping::Vertices VerticesOf(Mesh const& mesh) {
  return {mesh.GetCount(), mesh.coords.data(), mesh.normals.data()};
}

Mapped MapCoords(NProjectionMapping const& mapping, Path const& path, Mesh const& mesh) {
  Mapped out;
  out.coords.resize(9);  // what was there before goes
  out.indices = out.vertexMap = {1, 2};
  out.isMapped = mapping.ComputeTextureCoords(
      path, VerticesOf(mesh), {static_cast<unsigned int>(mesh.indices.size()), mesh.indices.data()},
      out.coords, out.indices, out.vertexMap);
  return out;
}

Mapped MapTangents(NProjectionMapping const& mapping, Path const& path, Mesh const& mesh) {
  Mapped out;
  out.isMapped = mapping.ComputeTangents(path, VerticesOf(mesh), out.tangents, out.binormals);
  return out;
}

/// A mapping with one entry, whose node has the path as a target.
struct Single : World {
  explicit Single(wchar_t const* method) : node(MakeProjection(method)) {
    node->AddModel(path);
    mapping->AddProjectionData(path, node);
  }
  Model model = MakeModel();
  Tree tree = MakeTree(model);
  Path path{*model, *tree};
  Projection node;
  Pointer<NProjectionMapping> mapping{new NProjectionMapping};
};

/// Vertices around the axis of a cylinder, at these u, and one triangle a run of three.
Mesh MakeRing(std::vector<float> const& us, std::vector<unsigned int> const& indices) {
  Mesh mesh;
  for (float const u : us) {
    float const angle = 6.2831853f * (u - 0.5f);
    mesh.coords.insert(mesh.coords.end(), {-std::sin(angle), 0.5f, std::cos(angle)});
    mesh.normals.insert(mesh.normals.end(), {0, 1, 0});
  }
  mesh.indices = indices;
  return mesh;
}

// What is given for a mesh.

double Draw(std::mt19937& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

Mesh MakeMesh(std::mt19937& random, unsigned int count) {
  Mesh mesh;
  for (unsigned int i = 0; i != 3 * count; ++i) {
    mesh.coords.push_back(static_cast<float>(Draw(random, -2, 2)));
    // Every other run has normals with ties and zeros.
    double const normal = Draw(random, -2, 2);
    mesh.normals.push_back(static_cast<float>(i / 600 % 2 == 0 ? normal : std::round(normal)));
  }
  mesh.coords[4] = std::numeric_limits<float>::quiet_NaN();
  mesh.coords[8] = std::numeric_limits<float>::infinity();
  for (unsigned int i = 0; i != 6 * count + 2; ++i) {
    mesh.indices.push_back(random() % 500 == 0 ? count + random() % 9 : random() % count);
  }
  return mesh;
}

oracle::Setup SetRandomly(std::mt19937& random, Single& world) {
  NProjectionNode& node = *world.node;
  world.model->SetTranslationY(Draw(random, -1, 1));
  world.model->SetRotationX(Draw(random, -90, 90));
  for (wchar_t const* const name : {L"scale.x", L"scale.y", L"scale.z"}) {
    node.QueryAttribute(name)->SetValue(Draw(random, -3, 3), true);
  }
  node.SetRotationZ(Draw(random, -180, 180));
  node.SetTranslationX(Draw(random, -1, 1));
  oracle::Setup setup{node.GetProjectionMethod(), {}, {}, {}, random() % 2 == 0, {}, {}, 1};
  constexpr wchar_t const* kAxes[] = {L"u", L"v", L"w"};
  for (int k = 0; k != 3; ++k) {
    setup.flip[k] = random() % 2 == 0;
    setup.repeat[k] = std::round(Draw(random, -1.4, 1.4)) * 1.3;
    setup.offset[k] = Draw(random, -1, 1);
    node.QueryAttribute(std::wstring(L"flip.") + kAxes[k])->SetValue(setup.flip[k], true);
    node.QueryAttribute(std::wstring(L"repeat.") + kAxes[k])->SetValue(setup.repeat[k], true);
    node.QueryAttribute(std::wstring(L"offset.") + kAxes[k])->SetValue(setup.offset[k], true);
  }
  if (setup.isExchanged) node.SetUVWOrder(NUVWO_VUW);
  if (random() % 2 == 0) {
    world.tree->SetUnit(0.25);
    node.SetUseSceneGraphUnit(false);
    setup.unit = 0.25f;
  }
  setup.frame = world.path.GetGlobalTransform();
  setup.transform = node.GetTransform();
  return setup;
}

template <class T>
void ExpectSame(std::vector<T> const& expected, std::vector<T> const& given) {
  ASSERT_EQ(expected.size(), given.size());
  for (std::size_t i = 0; i != expected.size(); ++i) {
    for (unsigned int k = 0; k != 3; ++k) {
      float const e = expected[i][k];
      float const g = given[i][k];
      ASSERT_TRUE(std::isnan(e)
                      ? std::isnan(g)
                      : std::bit_cast<std::uint32_t>(e) == std::bit_cast<std::uint32_t>(g))
          << "element " << i << ", component " << k << ": " << e << " and " << g;
    }
  }
}

TEST(ProjectionMapping, MapsAMeshAsVertexByVertex) {
  unsigned int const seed = std::random_device()();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  for (int round = 0; round != 100; ++round) {
    Single world(kMethods[round % 5]);
    oracle::Setup const setup = SetRandomly(random, world);
    Mesh const mesh = MakeMesh(random, 1 + random() % 3000 + 9);
    Mapped expected;
    oracle::ComputeCoords(setup, mesh, expected.coords, expected.indices, expected.vertexMap);
    oracle::ComputeTangents(setup, mesh, expected.tangents, expected.binormals);

    Mapped const coords = MapCoords(*world.mapping, world.path, mesh);
    ASSERT_TRUE(coords.isMapped);
    ExpectSame(expected.coords, coords.coords);
    EXPECT_EQ(expected.indices, coords.indices);
    EXPECT_EQ(expected.vertexMap, coords.vertexMap);
    world.model->SetTranslationX(100);  // the projection sticks to the model
    Mapped const tangents = MapTangents(*world.mapping, world.path, mesh);
    ASSERT_TRUE(tangents.isMapped);
    ExpectSame(expected.tangents, tangents.tangents);
    ExpectSame(expected.binormals, tangents.binormals);
  }
}

TEST(ProjectionMapping, CopiesTheLowerCornersAtTheSeam) {
  struct Row {
    char const* name;
    std::vector<float> us;
    std::vector<unsigned int> indices;
    std::vector<float> copies;
    std::vector<unsigned int> newIndices, sources;
  };
  for (Row const& row : std::vector<Row>{
           {"one low", {0.9f, 0.1f, 0.95f}, {0, 1, 2}, {1.1f}, {0, 3, 2}, {1}},
           {"two low", {0.9f, 0.1f, 0.05f}, {0, 1, 2}, {1.1f, 1.05f}, {0, 3, 4}, {1, 2}},
           {"none so far apart", {0.2f, 0.6f, 0.4f}, {0, 1, 2}, {}, {0, 1, 2}, {}},
           {"a copy for each triangle",
            {0.9f, 0.1f, 0.95f},
            {0, 1, 2, 2, 1, 0},
            {1.1f, 1.1f},
            {0, 3, 2, 2, 4, 0},
            {1, 1}},
           {"a copy of the very same corner",
            {0.9f, 0.1f},
            {0, 1, 1},
            {1.1f, 1.1f},
            {0, 2, 3},
            {1, 1}},
           {"an index of a copy counts as outside, before and after the copy",
            {0.9f, 0.1f, 0.95f},
            {3, 0, 0, 0, 1, 2, 0, 1, 3},
            {1.1f},
            {~0u, ~0u, ~0u, 0, 3, 2, ~0u, ~0u, ~0u},
            {1}},
           {"the largest index",
            {0.9f, 0.1f, 0.95f},
            {0, 1, 0xFFFFFFFF, 0, 1, 2},
            {1.1f},
            {~0u, ~0u, ~0u, 0, 3, 2},
            {1}},
           {"a last run of two", {0.9f, 0.1f, 0.95f}, {0, 1}, {}, {0, 1}, {}}}) {
    Single world(L"cylinder");
    Mapped const mapped = MapCoords(*world.mapping, world.path, MakeRing(row.us, row.indices));
    ASSERT_TRUE(mapped.isMapped) << row.name;
    std::vector<float> us = row.us;
    us.insert(us.end(), row.copies.begin(), row.copies.end());
    EXPECT_THAT(mapped.GetU(), testing::Pointwise(testing::FloatNear(1e-6f), us)) << row.name;
    EXPECT_EQ(mapped.indices, row.newIndices) << row.name;
    std::vector<unsigned int> vertexMap;
    for (unsigned int i = 0; i != row.us.size(); ++i) vertexMap.push_back(i);
    vertexMap.insert(vertexMap.end(), row.sources.begin(), row.sources.end());
    EXPECT_EQ(mapped.vertexMap, vertexMap) << row.name;
  }
}

TEST(ProjectionMapping, DegenerateTransformsEnd) {
  for (wchar_t const* const method : kMethods) {
    for (double const scale : {0.0, std::numeric_limits<double>::quiet_NaN(), 1e300}) {
      Single world(method);
      world.node->SetScaleY(scale);
      Mesh const mesh = MakeRing({0.9f, 0.1f, 0.95f}, {0, 1, 2});
      EXPECT_TRUE(MapCoords(*world.mapping, world.path, mesh).isMapped);
      EXPECT_TRUE(MapTangents(*world.mapping, world.path, mesh).isMapped);
    }
  }
}

// Which projection serves a model.

TEST(ProjectionMapping, AModelWithoutAProjectionBorrowsTheFirstEntry) {
  Single world(L"plane");
  Mesh const mesh{{1, 2, 3}, {0, 1, 0}, {0, 0, 0}};
  world.model->SetTranslationX(10);
  Path const other = world.MakePath();
  EXPECT_THAT(MapCoords(*world.mapping, other, mesh).GetU(), ElementsAre(11));
  EXPECT_TRUE(MapTangents(*world.mapping, other, mesh).isMapped);

  // The first in the map is the model that was made first.
  Projection second = world.MakeProjection(L"plane");
  second->SetOffsetU(0.5);
  second->AddModel(other);
  world.mapping->AddProjectionData(other, second);
  EXPECT_THAT(MapCoords(*world.mapping, other, mesh).GetU(), ElementsAre(1.5f));
  world.projections->RemoveNode(*second);
  second.reset();
  EXPECT_THAT(MapCoords(*world.mapping, other, mesh).GetU(), ElementsAre(11));
  world.projections->RemoveNode(*world.node);
  world.node.reset();
  for (Path const& path : {other, world.path, Path(), world.MakePath(),
                           world.mapping->GetModelToProjectionMap().begin()->first}) {
    EXPECT_FALSE(MapCoords(*world.mapping, path, mesh).isMapped);
    EXPECT_FALSE(MapTangents(*world.mapping, path, mesh).isMapped);
  }
}

TEST(ProjectionMapping, GivesFalseWithoutWhatItNeeds) {
  Mesh const mesh{{1, 2, 3}, {0, 1, 0}, {0, 0, 0}};
  Single world(L"plane");
  EXPECT_FALSE(MapCoords(*world.mapping, world.path, {}).isMapped);
  EXPECT_FALSE(MapTangents(*world.mapping, world.path, {}).isMapped);
  EXPECT_FALSE(MapCoords(*world.mapping, world.path, {{1, 2, 3}, {0, 1, 0}, {}}).isMapped);
  Pointer<NProjectionMapping> const empty(new NProjectionMapping);
  EXPECT_FALSE(MapCoords(*empty, world.path, mesh).isMapped);
  EXPECT_FALSE(MapTangents(*empty, world.path, mesh).isMapped);

  world.node->SetProjectionMethod(L"Plane");
  EXPECT_FALSE(MapCoords(*world.mapping, world.path, mesh).isMapped);
  EXPECT_FALSE(MapTangents(*world.mapping, world.path, mesh).isMapped);

  world.node->SetProjectionMethod(L"plane");
  world.node->RemoveModel(world.path);
  EXPECT_FALSE(MapCoords(*world.mapping, world.path, mesh).isMapped);
  EXPECT_THROW(MapTangents(*world.mapping, world.path, mesh), NProjectionNodeError);
  world.node->AddModel(world.MakePath());
  EXPECT_THROW(MapCoords(*world.mapping, world.path, mesh), NProjectionNodeError);

  world.node->AddModel(world.path);
  world.items->RemoveNode(*world.model);
  world.model.reset();
  EXPECT_FALSE(MapCoords(*world.mapping, world.path, mesh).isMapped);
}

TEST(ProjectionMapping, AReplacedModelKeepsProjectionAndFrame) {
  Single world(L"plane");
  Mesh const mesh{{1, 2, 3}, {0, 1, 0}, {0, 0, 0}};
  auto const& map = world.mapping->GetModelToProjectionMap();
  EXPECT_EQ(world.mapping->GetType(), 0);
  world.model->SetTranslationX(10);
  ASSERT_TRUE(MapCoords(*world.mapping, world.path, mesh).isMapped);
  Path const next = world.MakePath();
  Path const last = world.MakePath();
  EXPECT_FALSE(world.mapping->ReplaceModel(next, last));
  EXPECT_TRUE(world.mapping->ReplaceModel(map.begin()->first, next));
  EXPECT_THAT(MapCoords(*world.mapping, next, mesh).GetU(), ElementsAre(11));
  EXPECT_TRUE(world.node->Targets(next));

  // Another projection: the target moves all the same, at the old node.
  Projection const other = world.MakeProjection(L"box");
  EXPECT_TRUE(world.mapping->ReplaceModel(next, last, other));
  EXPECT_TRUE(world.node->Targets(last));
  EXPECT_EQ(map.at(last).Get(), other);
  EXPECT_TRUE(world.mapping->ReplaceModel(last, last, world.node));
  EXPECT_EQ(map.at(last).Get(), world.node);

  // A path that has an entry keeps it.
  EXPECT_TRUE(world.mapping->AddProjectionData(next, other));
  EXPECT_FALSE(world.mapping->AddProjectionData(next, world.node));
  EXPECT_FALSE(world.mapping->ReplaceModel(last, next));
  EXPECT_THAT(map, SizeIs(1));
  EXPECT_EQ(map.at(next).Get(), other);
}

}  // namespace
}  // namespace corvanta::mapping
