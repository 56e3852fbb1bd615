#include "tests/support/test.h"

namespace corvanta::data::domain::geometry {
namespace {

using material::texture_mapping::NUVWID_FLAT;
using material::texture_mapping::NUVWID_PRIMITIVE;
using material::texture_mapping::NUVWMappingID;

struct Change {
  NGeometryNode const* geometry;
  NSurface const* surface;
  NGeometryChangeType type;

  bool operator==(Change const&) const = default;
};

class Recorder final : public NGeometryChangeListener {
 public:
  std::vector<Change> heard;
  std::function<void()> react;

 private:
  void OnGeometryChangeImpl(NGeometryNode const& geometry, NSurface const& surface,
                            NGeometryChangeType type) override {
    heard.push_back({&geometry, &surface, type});
    if (react) react();
  }
};

/// A surface that counts the surfaces of its class that are alive.
class CountedSurface final : public NSurface {
 public:
  CountedSurface() { ++s_alive; }
  ~CountedSurface() override { --s_alive; }
  Pointer<NSurface> CloneSurface() const override {
    Pointer<CountedSurface> const clone(new CountedSurface);
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

class Geometry : public testing::Test {
 protected:
  using SurfacePointer = Pointer<NSurface>;

  Pointer<events::geometry_change::NMultiplexer> multiplexer{
      new events::geometry_change::NMultiplexer};
  Pointer<NGeometryDomain> domain{new NGeometryDomain(nullptr, nullptr, multiplexer.get())};
  Pointer<NGeometryNode> node = domain->CreateNode(NNodeID());
  Pointer<NGeometryNode> other = domain->CreateNode(NNodeID());
  SurfacePointer surface{new NPolygonSurface};
  Pointer<Recorder> recorder{new Recorder};

  void SetUp() override { multiplexer->AddObserver(*recorder); }
  std::vector<Change> Heard() { return std::exchange(recorder->heard, {}); }

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
  EXPECT_THAT(node->GetSurfaces(), testing::ElementsAreArray(made));
  std::map<SurfacePointer, int> map{{made[20], 1}, {nullptr, 0}, {made[3], 2}};
  EXPECT_EQ(map.begin()->first, nullptr);
  EXPECT_EQ(map.rbegin()->first, made[20]);
}

TEST_F(Geometry, NodesTellOfTheirSurfaces) {
  EXPECT_TRUE(node->AddSurface(*surface));
  EXPECT_THAT(Heard(), ElementsAre(Change{node.get(), surface.get(), NGCT_SURFACE_ADDED}));
  EXPECT_FALSE(node->AddSurface(*surface));
  EXPECT_FALSE(other->RemoveSurface(*surface));
  EXPECT_THAT(Heard(), IsEmpty());

  EXPECT_TRUE(other->AddSurface(*surface));
  Heard();
  recorder->react = [&] { EXPECT_EQ(surface->GetCoords().size(), 3u); };
  AssignTriangle(*surface);
  recorder->react = nullptr;
  EXPECT_THAT(Heard(), testing::UnorderedElementsAre(
                           Change{node.get(), surface.get(), NGCT_SURFACE_CHANGED},
                           Change{other.get(), surface.get(), NGCT_SURFACE_CHANGED}));
  domain->RemoveNode(*other);
  other.reset();
  AssignTriangle(*surface);
  EXPECT_THAT(Heard(), ElementsAre(Change{node.get(), surface.get(), NGCT_SURFACE_CHANGED}));

  recorder->react = [&] { EXPECT_THAT(node->GetSurfaces(), IsEmpty()); };
  EXPECT_TRUE(node->RemoveSurface(*surface));
  EXPECT_THAT(Heard(), ElementsAre(Change{node.get(), surface.get(), NGCT_SURFACE_REMOVED}));
  AssignTriangle(*surface);
  EXPECT_THAT(Heard(), IsEmpty());
}

TEST_F(Geometry, HoldsASurfaceAsLongAsItIsSpokenOf) {
  auto* const lone = new CountedSurface;
  EXPECT_FALSE(node->RemoveSurface(*lone));
  ASSERT_EQ(CountedSurface::s_alive, 1);  // asking for it didn't end it
  EXPECT_TRUE(node->AddSurface(*lone));
  recorder->react = [&] { EXPECT_EQ(CountedSurface::s_alive, 1); };
  EXPECT_TRUE(node->RemoveSurface(*lone));
  EXPECT_EQ(CountedSurface::s_alive, 0);

  auto* const dropped = new CountedSurface;
  recorder->react = nullptr;
  node->AddSurface(*dropped);
  other->AddSurface(*dropped);
  Heard();
  recorder->react = [&] {
    recorder->react = nullptr;
    node->RemoveSurface(*dropped);
    other->RemoveSurface(*dropped);
    EXPECT_EQ(dropped->GetCoords().size(), 3u);
  };
  AssignTriangle(*dropped);
  EXPECT_EQ(CountedSurface::s_alive, 0);
  // The second node doesn't hear of a surface that it hasn't any more.
  EXPECT_THAT(Heard(), ElementsAre(Change{node.get(), dropped, NGCT_SURFACE_CHANGED},
                                   Change{node.get(), dropped, NGCT_SURFACE_REMOVED},
                                   Change{other.get(), dropped, NGCT_SURFACE_REMOVED}));
}

TEST_F(Geometry, CopiesAreDeepAndAddThemselves) {
  SurfacePointer const second(new CountedSurface);
  AssignTriangle(*surface, 1.0f);
  AssignTriangle(*second, 2.0f);
  node->AddSurface(*surface);
  node->AddSurface(*second);
  node->SetName(L"board");
  other->AddSurface(*surface);
  Heard();
  node->CopyTo(*other);
  ASSERT_EQ(other->GetSurfaces().size(), 3u);
  EXPECT_EQ(Heard().size(), 2u);
  EXPECT_EQ(other->GetName(), L"board (2)");
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
  EXPECT_EQ(node->GetName(), L"board");
}

}  // namespace
}  // namespace corvanta::data::domain::geometry
