#include <bit>

#include "tests/support/world.h"

namespace corvanta::mapping {
namespace {

using namespace data::domain::projection;
using Path = NProjectionNode::ModelPath;
using Projection = Pointer<NProjectionNode>;

constexpr wchar_t const* kMethods[] = {L"plane", L"cylinder", L"sphere", L"triplanar", L"box"};

struct Mesh {
  std::vector<float> coords, normals;
  std::vector<unsigned int> indices;

  unsigned int GetCount() const { return static_cast<unsigned int>(coords.size() / 3); }
  Vec3 GetPoint(unsigned int i) const {
    return {coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]};
  }
  Vec3 GetNormal(unsigned int i) const {
    return {normals[3 * i], normals[3 * i + 1], normals[3 * i + 2]};
  }
};

/// Models, each the root of a tree, and projections.
struct World : support::World {
  Model MakeModel() const { return Make<NSceneGraphModelNode>(); }
  Path MakePath(Model const& model) const { return {*model, *MakeTree(model)}; }
  Path MakePath() const { return MakePath(MakeModel()); }
  Projection MakeProjection(wchar_t const* method) const {
    Projection made = projections->CreateNode();
    made->SetProjectionMethod(method);
    return made;
  }
};

/// What a mapping gives for a mesh.
struct Mapped {
  bool isMapped = false;
  std::vector<UVW> coords{};
  std::vector<unsigned int> indices{}, vertexMap{};
  std::vector<XYZ> tangents{}, binormals{};

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
  Pointer<NProjectionMapping> mapping = New<NProjectionMapping>();
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

/// Gives the model, the node and the tree random values. Gives the factor of the repetitions.
float SetRandomly(std::mt19937& random, Single& world) {
  NProjectionNode& node = *world.node;
  world.model->SetTranslationY(Draw(random, -1, 1));
  world.model->SetRotationX(Draw(random, -90, 90));
  auto const set = [&node](std::wstring const& name, auto const& value) {
    node.QueryAttribute(name)->SetValue(value, true);
  };
  for (wchar_t const* const axis : {L"x", L"y", L"z"})
    set(std::wstring(L"scale.") + axis, Draw(random, -3, 3));
  node.SetRotationZ(Draw(random, -180, 180));
  node.SetTranslationX(Draw(random, -1, 1));
  for (wchar_t const* const axis : {L"u", L"v", L"w"}) {
    set(std::wstring(L"flip.") + axis, random() % 2 == 0);
    set(std::wstring(L"repeat.") + axis, std::round(Draw(random, -1.4, 1.4)) * 1.3);
    set(std::wstring(L"offset.") + axis, Draw(random, -1, 1));
  }
  if (random() % 2 == 0) node.SetUVWOrder(NUVWO_VUW);
  world.tree->SetUnit(0.25);
  node.SetUseSceneGraphUnit(random() % 2 == 0);
  return node.IsUseSceneGraphUnit() ? 1 : 0.25f;
}

template <class T>
void ExpectSame(T const& expected, T const& given, unsigned int i) {
  for (unsigned int k = 0; k != 3; ++k) {
    float const e = expected[k], g = given[k];
    ASSERT_TRUE(std::isnan(e) ? std::isnan(g)
                              : std::bit_cast<std::uint32_t>(e) == std::bit_cast<std::uint32_t>(g))
        << "vertex " << i << ", component " << k << ": " << e << " and " << g;
  }
}

Vec3 Turn(Vec3 v, Matrix const& m) {
  m.MultDirMatrix(v, v);
  v.Normalize();
  return v;
}

// The projectors and the adjustment of their coordinates have tests of their own.
TEST(ProjectionMapping, MapsAMeshAsVertexByVertex) {
  Random random;
  NPlaneProjector const plane;
  NCylinderProjector const cylinder;
  NSphereProjector const sphere;
  NTriplanarProjector const triplanar;
  NBoxProjector const box;
  data::operators::projector::NProjector const* const projectors[] = {&plane, &cylinder, &sphere,
                                                                      &triplanar, &box};
  for (int round = 0; round != 100; ++round) {
    Single world(kMethods[round % 5]);
    float const factor = SetRandomly(random, world);
    data::operators::projector::NProjector const* const projector = projectors[round % 5];
    Mesh const mesh = MakeMesh(random, 1 + random() % 3000 + 9);
    Matrix scale;
    world.node->GetTransform().GetScale(scale);
    Matrix const toProjector =
        world.path.GetGlobalTransform() * world.node->GetTransform().Inverse();
    Matrix const forFaces = (toProjector * scale).Inverse().Transpose();

    Mapped const mapped = MapCoords(*world.mapping, world.path, mesh);
    ASSERT_TRUE(mapped.isMapped);
    ASSERT_EQ(mapped.vertexMap.size(), projector->HasSeam() ? mapped.coords.size() : 0);
    std::vector<float> us;  // before they are adjusted
    for (unsigned int i = 0; i != mapped.coords.size(); ++i) {
      // A copy of a vertex lies one turn further on.
      unsigned int const at = i < mesh.GetCount() ? i : mapped.vertexMap[i];
      Vec3 const p = Apply(toProjector, mesh.GetPoint(at)), n = Turn(mesh.GetNormal(at), forFaces);
      UVW c;
      projector->ProjectWithNormal(p.x, p.y, p.z, n.x, n.y, n.z, c.u, c.v, c.w);
      if (i != at) c.u += 1;
      us.push_back(c.u);
      world.node->ConvertTextureCoord(c.u, c.v, c.w, c.u, c.v, c.w, factor);
      ExpectSame(c, mapped.coords[i], i);
    }
    for (std::size_t i = 0; i != mapped.indices.size(); ++i) {
      unsigned int const index = mapped.indices[i];
      std::size_t const first = i - i % 3;
      bool const isWhole = first + 3 <= mesh.indices.size();  // a last run of two stays as it is
      bool const isOutside =
          isWhole &&
          *std::max_element(&mesh.indices[first], &mesh.indices[first] + 3) >= mesh.GetCount();
      ASSERT_EQ(isWhole && !isOutside ? mapped.vertexMap.at(index) : index,
                isOutside ? 0xFFFFFFFF : mesh.indices[i])
          << i;
      if (!isWhole || isOutside) continue;
      // No edge goes round the seam any more, and who was copied lay at the low side of one.
      float const u = us[index], next = us[mapped.indices[first + (i + 1) % 3]];
      bool const isInside = u >= 0 && u <= 1 && next >= 0 && next <= 1;
      ASSERT_FALSE(isInside && std::fabs(u - next) > 0.5f) << i;
      ASSERT_FALSE(index >= mesh.GetCount() && u >= 1.5f) << i;
    }

    world.model->SetTranslationX(100);  // the projection sticks to the model
    Mapped const tangents = MapTangents(*world.mapping, world.path, mesh);
    ASSERT_TRUE(tangents.isMapped);
    Matrix const toModel = toProjector.Inverse();
    for (unsigned int i = 0; i != mesh.GetCount(); ++i) {
      Vec3 const p = Apply(toProjector, mesh.GetPoint(i)),
                 n = Turn(mesh.GetNormal(i), toModel.Transpose());
      Vec3 t, b;
      projector->ComputeTangentFrame(p.x, p.y, p.z, n.x, n.y, n.z, t.x, t.y, t.z, b.x, b.y, b.z);
      t = Turn(t, toModel);
      b = Turn(b, toModel);
      world.node->ConvertTangent(t.x, t.y, t.z, b.x, b.y, b.z);
      ExpectSame({t.x, t.y, t.z}, tangents.tangents[i], i);
      ExpectSame({b.x, b.y, b.z}, tangents.binormals[i], i);
    }
  }
}

TEST(ProjectionMapping, TheProjectorStandsWhereItsNodePutsIt) {
  Single world(L"plane");
  world.node->SetScaleX(2);
  world.node->SetRotationY(90);
  world.node->SetTranslationX(10);
  Mesh const mesh{{1, 2, 3}, {0, 1, 0}, {0, 0, 0}};
  UVW const found = MapCoords(*world.mapping, world.path, mesh).coords.at(0);
  EXPECT_NEAR(found.u, -1.5, 1e-5);  // 3 along the turned x, at half the scale
  EXPECT_NEAR(found.v, -9, 1e-5);
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
  auto const empty = New<NProjectionMapping>();
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
  Path const next = world.MakePath(), last = world.MakePath();
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

/// Hears a projection's attributes and its method, in one list.
class Recorder final : public NProjectionChangeListener,
                       public data::events::attribute_change::NListener {
 public:
  std::vector<std::wstring> heard;
  std::function<void()> react;

 private:
  void OnProjectionChangeImpl(NProjectionNode const& projection) override {
    heard.push_back(L"now " + projection.GetProjectionMethod());
  }
  void OnAttributeChangeImpl(NAttributeHost&, NAttribute const& attribute) override {
    heard.push_back(attribute.GetName());
    if (react) react();
  }
};

struct ProjectionNode : testing::Test, World {};

TEST_F(ProjectionNode, TellsOfItsMethodAfterTheAttribute) {
  Projection const node = MakeProjection(L"plane");
  auto const recorder = New<Recorder>();
  attributes->AddObserver(*recorder);
  node->AddObserver(*recorder);
  node->SetProjectionMethod(PM_SPHERE);
  node->SetScaleX(2);
  node->SetUVWOrder(NUVWO_VUW);
  EXPECT_THAT(recorder->heard, ElementsAre(L"method", L"now sphere", L"scale.x", L"uvwOrder"));
}

TEST_F(ProjectionNode, ScalesThenTurnsThenMoves) {
  Projection const node = MakeProjection(L"plane");
  EXPECT_EQ(node->GetTransform(), Matrix());
  node->SetScaleX(2);
  node->SetRotationZ(90);
  node->SetTranslationX(10);
  Vec3 out;
  node->GetTransform().MultVecMatrix({1, 0, 0}, out);
  EXPECT_NEAR(out.x, 10, 1e-5);
  EXPECT_NEAR(out.y, 2, 1e-5);

  // The value from before is read inside the event, and the new one after it, thrown or not.
  auto const recorder = New<Recorder>();
  attributes->AddObserver(*recorder);
  recorder->react = [&] {
    EXPECT_EQ(node->GetTransform()(3, 1), 0.0f);
    throw 1;
  };
  EXPECT_THROW(node->SetTranslationY(5), int);
  EXPECT_EQ(node->GetTransform()(3, 1), 5.0f);
  // What isn't among the nine, and a silent write, leave the cache alone.
  recorder->react = nullptr;
  node->QueryAttribute(AN_TRANSLATION_Z)->SetValue(7.0, false);
  node->QueryAttribute(AN_FLIP_U)->SetValue(true, true);
  EXPECT_EQ(node->GetTransform()(3, 2), 0.0f);
  for (wchar_t const* const name :
       {AN_TRANSLATION_X, AN_TRANSLATION_Y, AN_TRANSLATION_Z, AN_ROTATION_X, AN_ROTATION_Y,
        AN_ROTATION_Z, AN_SCALE_X, AN_SCALE_Y, AN_SCALE_Z}) {
    Matrix const before = node->GetTransform();
    NAttribute& attribute = *node->QueryAttribute(name);
    attribute.SetValue(attribute.GetDouble() + 1.5, true);
    EXPECT_FALSE(node->GetTransform() == before) << testing::PrintToString(name);
  }
}

TEST_F(ProjectionNode, ATargetKeepsTheFrameOfItsFirstUse) {
  Projection const node = MakeProjection(L"plane");
  Model const model = MakeModel();
  Path const path = MakePath(model);
  EXPECT_THROW(node->GetModelToProjectionTransform(path), NProjectionNodeError);
  EXPECT_TRUE(node->GetTargets().empty());

  model->SetTranslationX(3);
  EXPECT_TRUE(node->AddModel(path));
  EXPECT_FALSE(node->GetTargets().begin()->second);
  EXPECT_EQ(node->GetModelToProjectionTransform(path)(3, 0), 3.0f);
  EXPECT_EQ(GetGlobalTransform(*node, path), Matrix());
  EXPECT_FALSE(node->AddModel(path));
  EXPECT_FALSE(node->AddModelForDeserialization(path, Matrix()));
  model->SetTranslationX(5);
  EXPECT_EQ(node->GetModelToProjectionTransform(path)(3, 0), 3.0f);
  EXPECT_EQ(GetGlobalTransform(*node, path)(3, 0), 2.0f);

  EXPECT_TRUE(node->RemoveModel(path));
  EXPECT_FALSE(node->RemoveModel(path));
  EXPECT_FALSE(node->Targets(path));
  Matrix saved;
  saved(3, 0) = 8;
  EXPECT_TRUE(node->AddModelForDeserialization(path, saved));
  EXPECT_EQ(node->GetModelToProjectionTransform(path), saved);

  Path const gone = MakePath();  // nobody holds its model but the domain
  node->AddModel(gone);
  items->RemoveNode(const_cast<NSceneGraphModelNode&>(*gone.GetNode()));
  EXPECT_THROW(node->GetModelToProjectionTransform(gone),
               data::domain::scenegraph::NSceneGraphPathError);
  EXPECT_FALSE(node->GetTargets().at(gone));
}

TEST_F(ProjectionNode, AReplacedTargetHandsOnItsFrame) {
  Projection const node = MakeProjection(L"plane");
  Path const first = MakePath(), second = MakePath(), third = MakePath();
  Matrix frame;
  frame(3, 1) = 4;
  node->AddModelForDeserialization(first, frame);
  node->ReplaceModel(first, second);
  EXPECT_FALSE(node->Targets(first));
  EXPECT_TRUE(node->GetTargets().at(second) == frame);
  node->ReplaceModel(first, third);  // no target any more
  EXPECT_FALSE(node->Targets(third));
  node->AddModel(third);
  node->ReplaceModel(node->GetTargets().find(second)->first, third);
  EXPECT_EQ(node->GetTargets().size(), 1u);
  EXPECT_FALSE(node->GetTargets().at(third)) << "its own empty frame stays";
  node->ReplaceModel(third, first);
  EXPECT_FALSE(node->GetTargets().at(first));
  node->ReplaceModel(first, first);
  EXPECT_TRUE(node->Targets(first));
}

TEST_F(ProjectionNode, FlipsExchangesRepeatsAndShifts) {
  struct Row {
    bool flipU, flipV, isExchanged;
    double repeat, offset;                          // of u
    std::array<float, 3> coord, tangent, binormal;  // of 1/4, 1/2, 3/4 and x and y
  };
  for (Row const& row :
       std::vector<Row>{{false, false, false, 1, 0, {0.25f, 1.75f, 2.75f}, {1, 0, 0}, {0, 1, 0}},
                        {true, false, false, 1, 0, {0.75f, 1.75f, 2.75f}, {-1, 0, 0}, {0, 1, 0}},
                        {false, true, false, 2, 1, {1.5f, 1.75f, 2.75f}, {1, 0, 0}, {0, -1, 0}},
                        {false, false, true, 2, 1, {2, 1, 2.75f}, {0, -1, 0}, {-1, 0, 0}},
                        {true, false, true, 1, 0.5, {1, 2.5f, 2.75f}, {0, -1, 0}, {1, 0, 0}},
                        {true, true, true, 4, 0, {2, 2.5f, 2.75f}, {0, 1, 0}, {1, 0, 0}}}) {
    Projection const node = MakeProjection(L"plane");
    node->QueryAttribute(AN_FLIP_U)->SetValue(row.flipU, true);
    node->QueryAttribute(AN_FLIP_V)->SetValue(row.flipV, true);
    if (row.isExchanged) node->SetUVWOrder(NUVWO_VUW);
    node->SetRepeatU(row.repeat);
    node->SetOffsetU(row.offset);
    node->SetRepeatV(3);
    node->SetOffsetV(0.25);
    node->SetRepeatW(5);
    node->SetOffsetW(-1);
    std::array<float, 3> c{}, t{1, 0, 0}, b{0, 1, 0};
    node->ConvertTextureCoord(0.25f, 0.5f, 0.75f, c[0], c[1], c[2], 1);
    node->ConvertTangent(t[0], t[1], t[2], b[0], b[1], b[2]);
    EXPECT_EQ(c, row.coord);
    EXPECT_EQ(t, row.tangent);
    EXPECT_EQ(b, row.binormal);
  }
}

TEST_F(ProjectionNode, ARepeatOf0ShiftsWhatTheOutputHeld) {
  Projection const node = MakeProjection(L"plane");
  auto const convert = [&](float scale) {
    std::array<float, 3> out{10, 20, 30};
    node->ConvertTextureCoord(0.25f, 0.5f, 0.75f, out[0], out[1], out[2], scale);
    return out;
  };
  node->SetUVWOrder(SwapVW(NUVWO_UVW));  // no order that is acted on
  node->QueryAttribute(AN_FLIP_W)->SetValue(true, true);
  node->SetRepeatU(0);
  node->SetOffsetU(1);
  EXPECT_THAT(convert(2), ElementsAre(11, 1, 0.5f));
  EXPECT_THAT(convert(0), ElementsAre(11, 20, 30));
}

TEST(UVWOrder, SwapsTwoFields) {
  EXPECT_EQ(SwapUV(NUVWO_UVW), NUVWO_VUW);
  EXPECT_EQ(SwapVW(NUVWO_UVW), 33);
  EXPECT_EQ(SwapWU(NUVWO_UVW), 6);
  for (long order = 0; order != 128; ++order) {
    auto const value = static_cast<NUVWOrder>(order);
    EXPECT_EQ(SwapUV(SwapUV(value)), value);
    EXPECT_EQ(SwapWU(value), SwapUV(SwapVW(SwapUV(value))));
  }
}

}  // namespace
}  // namespace corvanta::mapping
