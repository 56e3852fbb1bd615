#include "tests/support/world.h"

namespace corvanta::data::domain::geometry {
namespace {

using material::texture_mapping::NUVWID_FLAT;
using material::texture_mapping::NUVWID_PRIMITIVE;
using material::texture_mapping::NUVWMappingID;

using VX_Tess::NurbsBasis;
using VX_Tess::NurbsCurve2d;
using VX_Tess::NurbsSurface;

/// The node, the surface, and what happened.
using Change = std::tuple<core::node::NNode const*, NSurface const*, std::string>;

/// A surface that counts the surfaces of its class that are alive.
class CountedSurface final : public NSurface {
 public:
  CountedSurface() { ++s_alive; }
  ~CountedSurface() override { --s_alive; }
  Pointer<NSurface> CloneSurface() const override {
    auto const clone = New<CountedSurface>();
    CopyTo(*clone);
    return clone;
  }
  static inline int s_alive = 0;
};

std::vector<float> Floats(NSurface const& surface) {
  std::vector<float> floats;
  for (auto const* points : {&surface.GetCoords(), &surface.GetNormals()}) {
    for (auto const& point : *points) floats.insert(floats.end(), {point.x, point.y, point.z});
  }
  return floats;
}

class Geometry : public testing::Test, protected World {
 protected:
  using SurfacePointer = Pointer<NSurface>;

  Pointer<NGeometryNode> node = geometries->CreateNode(), other = geometries->CreateNode();
  SurfacePointer surface = New<NPolygonSurface>();
  Pointer<support::EventLog> log = Listen();
  std::vector<Change> changes;
  std::function<void()> react;

  void SetUp() override {
    log->react = [this](NSignal const& signal) {
      changes.emplace_back(signal.node, signal.surface, signal.name);
      if (auto const call = react) call();
    };
  }
  std::vector<Change> Heard() { return std::exchange(changes, {}); }

  static bool AssignTriangle(NSurface& target, float z = 0.0f) {
    return target.Assign({0, 0, z, 1, 0, z, 0, 1, z}, {0, 0, 1, 0, 0, 1, 0, 0, 1}, {0, 1, 2},
                         {{NUVWID_PRIMITIVE, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}}});
  }
};

TEST_F(Geometry, AssignRefusesFloatsThatDontPair) {
  node->AddSurface(*surface);
  AssignTriangle(*surface);
  Heard();
  auto const before = Floats(*surface);
  std::vector<float> const six(6), nine(9), ten(10);
  EXPECT_FALSE(surface->Assign(nine, six, {}, {}));
  EXPECT_FALSE(surface->Assign(six, nine, {}, {}));
  EXPECT_FALSE(surface->Assign(ten, ten, {}, {}));
  EXPECT_EQ(Floats(*surface), before);
  EXPECT_THAT(surface->GetIndices(), ElementsAre(0u, 1u, 2u));
  EXPECT_NE(surface->GetUVWs(NUVWID_PRIMITIVE), nullptr);
  EXPECT_THAT(Heard(), IsEmpty());
}

TEST_F(Geometry, AssignTakesEverythingElseAsItIs) {
  NUVWMappingID const own{77};
  EXPECT_TRUE(surface->Assign({1, 2, 3, 4, 5, 6}, {7, 8, 9, 10, 11, 12}, {9, 0xFFFFFFFF},
                              {{NUVWID_FLAT, {{1, 2, 3}}}, {own, {{1, 2, 3}, {4, 5, 6}}}}));
  EXPECT_THAT(Floats(*surface), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12));
  EXPECT_THAT(surface->GetIndices(), ElementsAre(9u, 0xFFFFFFFFu));
  EXPECT_EQ(surface->GetUVWs(NUVWID_FLAT), nullptr);
  ASSERT_NE(surface->GetUVWs(own), nullptr);
  EXPECT_EQ((*surface->GetUVWs(own))[1][2], 6.0f);

  // What it holds may come back as an argument.
  EXPECT_TRUE(surface->Assign({6, 5, 4, 3, 2, 1}, {0, 0, 1, 0, 0, 1}, surface->GetIndices(),
                              surface->GetUVWsMap()));
  EXPECT_THAT(surface->GetIndices(), ElementsAre(9u, 0xFFFFFFFFu));
  ASSERT_NE(surface->GetUVWs(own), nullptr);
  EXPECT_EQ((*surface->GetUVWs(own))[0][1], 2.0f);

  EXPECT_TRUE(surface->Assign({}, {}, {}, {{own, {}}, {NUVWID_FLAT, {{1, 2, 3}}}}));
  EXPECT_THAT(Floats(*surface), IsEmpty());
  ASSERT_EQ(surface->GetUVWsMap().size(), 1u);
  EXPECT_EQ(surface->GetUVWsMap().begin()->first, own);
}

TEST_F(Geometry, FlatAssignMakesOneSet) {
  AssignTriangle(*surface);
  float const coords[] = {1, 2, 3, 4, 5, 6};
  float const normals[] = {0, 0, 1, 0, 1, 0};
  float const uvs[] = {0.25f, 0.5f, 0.75f, 1};
  unsigned long const indices[] = {1, 0xFFFFFFFFul, 0x100000000ul, 0x100000001ul, ~0ul};
  EXPECT_TRUE(surface->Assign(coords, normals, 2, indices, 5, uvs));
  EXPECT_THAT(Floats(*surface), ElementsAre(1, 2, 3, 4, 5, 6, 0, 0, 1, 0, 1, 0));
  EXPECT_THAT(surface->GetIndices(),
              ElementsAre(1u, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu));
  ASSERT_EQ(surface->GetUVWsMap().size(), 1u);
  auto const* const flat = surface->GetUVWs(NUVWID_FLAT);
  ASSERT_TRUE(flat != nullptr && flat->size() == 2);
  EXPECT_EQ((*flat)[1].v, 1.0f);
  EXPECT_EQ((*flat)[1].w, 0.0f);
  EXPECT_TRUE(surface->Assign(nullptr, nullptr, 0, nullptr, 0, nullptr));
  ASSERT_NE(surface->GetUVWs(NUVWID_FLAT), nullptr);
  EXPECT_THAT(*surface->GetUVWs(NUVWID_FLAT), IsEmpty());
}

TEST_F(Geometry, SurfacesStandInOrderOfCreationWhereverTheyLie) {
  std::vector<SurfacePointer> made, dropped;
  for (int i = 0; i != 32; ++i) dropped.emplace_back(new NPolygonSurface);
  for (int i = 0; i != 16; ++i) made.emplace_back(new NPolygonSurface);
  dropped.clear();  // what comes now lies where these were, below the others
  for (int i = 0; i != 16; ++i) made.emplace_back(new NPolygonSurface);
  for (std::size_t i = made.size(); i-- != 0;) EXPECT_TRUE(node->AddSurface(*made[i]));
  EXPECT_THAT(node->GetSurfaces(), ElementsAreArray(made));
  std::map<SurfacePointer, int> map{{made[20], 1}, {nullptr, 0}, {made[3], 2}};
  EXPECT_EQ(map.begin()->first, nullptr);
  EXPECT_EQ(map.rbegin()->first, made[20]);
}

TEST_F(Geometry, NodesTellOfTheirSurfaces) {
  EXPECT_TRUE(node->AddSurface(*surface));
  EXPECT_THAT(Heard(), ElementsAre(Change{node.get(), surface.get(), "surfaceAdded"}));
  EXPECT_FALSE(node->AddSurface(*surface));
  EXPECT_FALSE(other->RemoveSurface(*surface));
  EXPECT_THAT(Heard(), IsEmpty());

  EXPECT_TRUE(other->AddSurface(*surface));
  Heard();
  react = [&] { EXPECT_EQ(surface->GetCoords().size(), 3u); };
  AssignTriangle(*surface);
  react = nullptr;
  EXPECT_THAT(Heard(),
              testing::UnorderedElementsAre(Change{node.get(), surface.get(), "surfaceChanged"},
                                            Change{other.get(), surface.get(), "surfaceChanged"}));
  geometries->RemoveNode(*other);
  other.reset();
  AssignTriangle(*surface);
  EXPECT_THAT(Heard(), ElementsAre(Change{node.get(), surface.get(), "surfaceChanged"}));

  react = [&] { EXPECT_THAT(node->GetSurfaces(), IsEmpty()); };
  EXPECT_TRUE(node->RemoveSurface(*surface));
  EXPECT_THAT(Heard(), ElementsAre(Change{node.get(), surface.get(), "surfaceRemoved"}));
  AssignTriangle(*surface);
  EXPECT_THAT(Heard(), IsEmpty());
}

TEST_F(Geometry, HoldsASurfaceAsLongAsItIsSpokenOf) {
  auto* const lone = new CountedSurface;
  EXPECT_FALSE(node->RemoveSurface(*lone));
  ASSERT_EQ(CountedSurface::s_alive, 1);  // asking for it didn't end it
  EXPECT_TRUE(node->AddSurface(*lone));
  react = [&] { EXPECT_EQ(CountedSurface::s_alive, 1); };
  EXPECT_TRUE(node->RemoveSurface(*lone));
  EXPECT_EQ(CountedSurface::s_alive, 0);

  auto* const dropped = new CountedSurface;
  react = nullptr;
  node->AddSurface(*dropped);
  other->AddSurface(*dropped);
  Heard();
  react = [&] {
    react = nullptr;
    node->RemoveSurface(*dropped);
    other->RemoveSurface(*dropped);
    EXPECT_EQ(dropped->GetCoords().size(), 3u);
  };
  AssignTriangle(*dropped);
  EXPECT_EQ(CountedSurface::s_alive, 0);
  // The second node doesn't hear of a surface that it hasn't any more.
  EXPECT_THAT(Heard(), ElementsAre(Change{node.get(), dropped, "surfaceChanged"},
                                   Change{node.get(), dropped, "surfaceRemoved"},
                                   Change{other.get(), dropped, "surfaceRemoved"}));
}

TEST_F(Geometry, CopiesAreDeepAndAddThemselves) {
  SurfacePointer const second(new CountedSurface);
  AssignTriangle(*surface, 1.0f);
  AssignTriangle(*second, 2.0f);
  node->AddSurface(*surface);
  node->AddSurface(*second);
  other->AddSurface(*surface);
  Heard();
  node->CopyTo(*other);
  ASSERT_EQ(other->GetSurfaces().size(), 3u);
  EXPECT_EQ(Heard().size(), 2u);
  auto const copies = std::vector<SurfacePointer>(std::next(other->GetSurfaces().begin()),
                                                  other->GetSurfaces().end());
  EXPECT_EQ(Floats(*copies[0]), Floats(*surface));
  EXPECT_EQ(Floats(*copies[1]), Floats(*second));
  EXPECT_NE(dynamic_cast<CountedSurface*>(copies[1].get()), nullptr);
  EXPECT_EQ(copies[0]->GetUVWs(NUVWID_PRIMITIVE)->size(), 3u);
  AssignTriangle(*second, 3.0f);
  EXPECT_EQ(copies[1]->GetCoords()[0].z, 2.0f);

  Heard();
  SurfacePointer const clone = surface->CloneSurface();
  AssignTriangle(*clone);
  EXPECT_THAT(Heard(), IsEmpty());

  node->CopyTo(*node);
  EXPECT_EQ(node->GetSurfaces().size(), 4u);
}

NurbsBasis const kLine{2, {0, 0, 1, 1}};

TEST(Nurbs, RefusesWhatIsInconsistent) {
  struct Row {
    char const* name;
    NurbsBasis u;            // beside a line along v
    std::size_t pointCount;  // for a curve half as many
    std::vector<double> weights = {};
    bool isTaken = false;
  };
  Row const rows[] = {
      {"line", kLine, 4, {}, true},
      {"weighted", kLine, 4, {1, 0.5, 2, 1e-300}, true},
      {"unclamped", {3, {-3, -1, 0, 2, 5, 9, 9.5}}, 8, {}, true},
      {"inner knot as often as the order", {2, {0, 0, 1, 1, 2, 2}}, 8, {}, true},
      {"inner knot too often", {2, {0, 0, 1, 1, 1, 2, 2}}, 10},
      {"order 1", {1, {0, 1, 2}}, 4},
      {"fewer control points than the order", {3, {0, 0, 1, 1, 1}}, 4},
      {"an order beyond all knots", {0xFFFFFFFF, {0, 0, 1, 1}}, 4},
      {"descending", {2, {0, 0, 1, 0.5}}, 4},
      {"knot not a number", {2, {0, 0, kNaN, 1}}, 4},
      {"endless knot", {2, {0, 0, 1, kInfinity}}, 4},
      {"too few control points", kLine, 2},
      {"too many control points", kLine, 6},
      {"too few weights", kLine, 4, {1, 1, 1}},
      {"zero weight", kLine, 4, {1, 0, 1, 1}},
      {"weight not a number", kLine, 4, {1, kNaN, 1, 1}},
  };
  for (Row const& row : rows) {
    SCOPED_TRACE(row.name);
    auto const surface = New<NurbsSurface>();
    std::vector<Vec3> const old(4, Vec3(1, 2, 3)), points(row.pointCount, Vec3(4, 5, 6));
    ASSERT_TRUE(surface->SetGeometry(kLine, kLine, old, {1, 2, 3, 4}));
    EXPECT_EQ(surface->SetGeometry(kLine, row.u, points, row.weights), row.isTaken);
    EXPECT_EQ(surface->SetGeometry(row.u, kLine, points, row.weights), row.isTaken);
    EXPECT_EQ(surface->GetBasisU(), row.isTaken ? row.u : kLine);
    EXPECT_EQ(surface->GetControlPoints(), row.isTaken ? points : old);
    EXPECT_EQ(surface->GetWeights(), row.isTaken ? row.weights : (std::vector<double>{1, 2, 3, 4}));

    auto const curve = New<NurbsCurve2d>();
    std::vector<double> weights = row.weights;
    if (weights.size() == 4) weights.resize(2);
    ASSERT_TRUE(curve->SetGeometry(kLine, std::vector<Vec2>(2), {1, 2}));
    EXPECT_EQ(curve->SetGeometry(row.u, std::vector<Vec2>(row.pointCount / 2), weights),
              row.isTaken);
    EXPECT_EQ(curve->GetBasis(), row.isTaken ? row.u : kLine);
    EXPECT_EQ(curve->GetWeights(), row.isTaken ? weights : (std::vector<double>{1, 2}));
  }
}

TEST(Nurbs, KeepsTrimCurvesByLoop) {
  auto const surface = New<NNurbsSurface>();
  EXPECT_EQ(surface->GetNurbsSaveType(), NNST_DEFAULT);
  auto const a = New<NurbsCurve2d>(), b = New<NurbsCurve2d>();
  EXPECT_FALSE(surface->AddTrimCurve(0, *a));
  EXPECT_THAT(surface->GetTrimLoops(), IsEmpty());
  EXPECT_EQ(surface->AddTrimLoop(), 0u);
  EXPECT_EQ(surface->AddTrimLoop(), 1u);
  EXPECT_THAT(surface->GetTessNurbsSurface().GetTrimCurves(), IsEmpty());
  EXPECT_FALSE(surface->AddTrimCurve(2, *a));
  EXPECT_FALSE(surface->AddTrimCurve(0xFFFFFFFF, *a));
  EXPECT_TRUE(surface->AddTrimCurve(1, *a));
  EXPECT_TRUE(surface->AddTrimCurve(1, *b));
  EXPECT_TRUE(surface->AddTrimCurve(0, *b));
  EXPECT_THAT(surface->GetTrimLoops(), ElementsAre(ElementsAre(b), ElementsAre(a, b)));
  NurbsSurface& tess = surface->GetTessNurbsSurface();
  EXPECT_THAT(tess.GetTrimCurves(),
              ElementsAre(testing::Pair(0u, ElementsAre(b)), testing::Pair(1u, ElementsAre(a, b))));
  EXPECT_EQ(tess.AppendTrimCurve(0, nullptr), 0);
  EXPECT_NE(tess.AppendTrimCurve(0xFFFFFFFF, a.get()), 0);
  EXPECT_THAT(tess.GetTrimCurves(), SizeIs(3));
  tess.ClearGeometry();
  EXPECT_THAT(tess.GetTrimCurves(), IsEmpty());
  EXPECT_THAT(surface->GetTrimLoops(), SizeIs(2));
}

TEST(Nurbs, ClonesShareNothingButTheCurvesOfTheLoops) {
  auto surface = New<NNurbsSurface>();
  auto const curve = New<NurbsCurve2d>();
  std::vector<Vec3> const points(4, Vec3(1, 2, 3));
  curve->SetGeometry(kLine, {Vec2(0, 0), Vec2(1, 1)});
  surface->GetTessNurbsSurface().SetGeometry(kLine, kLine, points, {1, 2, 3, 4});
  surface->SetNurbsSaveType(NNurbsSaveType{2});
  surface->Assign({1, 2, 3}, {0, 0, 1}, {0, 0, 0}, {});
  surface->AddTrimLoop();
  surface->AddTrimCurve(0, *curve);

  auto const clone = boost::dynamic_pointer_cast<NNurbsSurface>(surface->CloneSurface());
  ASSERT_TRUE(clone);
  Pointer<NurbsSurface> const shallow(surface->GetTessNurbsSurface().Clone(false));
  EXPECT_EQ(shallow->GetTrimCurves().at(0)[0], curve);
  surface->AddTrimLoop();
  surface->AddTrimCurve(0, *new NurbsCurve2d);
  surface->GetTessNurbsSurface().ClearGeometry();
  EXPECT_FALSE(surface->GetTessNurbsSurface().GetBasisU().IsValid() ||
               surface->GetTessNurbsSurface().GetBasisV().IsValid());
  curve->ClearGeometry();
  surface.reset();

  EXPECT_EQ(clone->GetNurbsSaveType(), 2);
  EXPECT_EQ(clone->GetCoords().size(), 1u);
  EXPECT_THAT(clone->GetTrimLoops(), ElementsAre(ElementsAre(curve)));
  NurbsSurface const& tess = clone->GetTessNurbsSurface();
  EXPECT_EQ(tess.GetControlPoints(), points);
  EXPECT_THAT(tess.GetWeights(), ElementsAre(1, 2, 3, 4));
  ASSERT_THAT(tess.GetTrimCurves(), ElementsAre(testing::Pair(0u, SizeIs(1))));
  EXPECT_EQ(tess.GetTrimCurves().at(0)[0]->GetBasis(), kLine);
  EXPECT_TRUE(clone->AddTrimCurve(0, *curve));
}

}  // namespace
}  // namespace corvanta::data::domain::geometry
