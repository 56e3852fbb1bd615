#include <atomic>
#include <numbers>
#include <thread>

#include "corvanta/data/internal/detail/primitives/primitive.h"
#include "corvanta/platform/picture.h"
#include "tests/support/temporary_files.h"
#include "tests/support/world.h"

namespace corvanta::data::internal {
namespace {

using core::domain::NDomainBase;

class InternalData : public testing::Test {
 protected:
  InternalData() { m_events->AddObserver(*m_listener); }
  ~InternalData() override { Uninitialize(m_manager); }

  Pointer<NDomainBase> GetDomain(std::wstring const& type) const {
    return m_manager.QueryDomain(NLocator(NUri::CreateInternalUri(L"/" + type)));
  }
  std::size_t CountDomains() const { return std::distance(m_manager.begin(), m_manager.end()); }

  support::TemporaryFiles const m_files;
  NDomainManager m_manager;
  Pointer<NEventMultiplexer> const m_events = New<NEventMultiplexer>();
  Pointer<support::EventLog> const m_listener = New<support::EventLog>(true);
};

struct DomainRow {
  wchar_t const* type;
  std::vector<wchar_t const*> ids;  // as they begin, in the order of creation
};

std::vector<DomainRow> const kDomains = {
    {L"geometry",
     {L"992E0C88", L"DBCE9553", L"88E76818", L"1BC23DCE", L"1DDD438D", L"78BCFC04", L"E799E583",
      L"97B78198", L"A6DBAEFA", L"725F84D5", L"1C8BDE8F", L"133250BB", L"4F8C28AD", L"A5D4EFFA",
      L"4E5A00F2", L"F240DF53", L"843F1FCB"}},
    {L"scene", {L"747A8C87"}},
    {L"scenegraphitem", {L"545C467D", L"05F1A0AC", L"1B6183D1", L"F41DC0AD", L"F1DB67C5"}},
    {L"scenegraphtree", {L"C7B132A5", L"B4EBDF45"}},
    {L"camera", {L"1656948F"}},
    {L"material",
     {L"71E0BBED", L"C25BB2EA", L"9FBC349D", L"84085B5A", L"2F9342DE", L"6770FCAE", L"584E3835",
      L"80596897", L"20A1C7EA"}},
    {L"texture", {L"9E3B921F", L"8DCE98BA", L"4A273189"}},
    {L"image", {L"CEBDEB7B", L"6107FA33", L"5501B09A", L"AD7357E1"}},
    {L"lightenvironment", {L"00D73770"}},
    {L"environment", {L"8C8872CB"}},
};

/// Whether `node` has the id of that row.
bool Is(core::node::NNode const& node, int domain, int row) {
  return node.GetID().ToString().starts_with(kDomains[domain].ids[row]);
}

TEST_F(InternalData, StandsInTenReadOnlyDomainsUnderFixedIds) {
  ASSERT_TRUE(Initialize(m_manager, *m_events));
  EXPECT_EQ(CountDomains(), 10U);
  for (auto const& [locator, entry] : m_manager) EXPECT_EQ(entry.text, L"Internal");
  for (int row = 0; row != 10; ++row) {
    std::wstring const type = kDomains[row].type;
    SCOPED_TRACE(core::text::ToNarrow(type));
    auto const found = GetDomain(type);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->GetName(), type);
    EXPECT_EQ(found->GetType(), type);
    EXPECT_TRUE(found->IsReadOnly());
    ASSERT_EQ(found->GetNodeCount(), kDomains[row].ids.size());
    int node = 0;
    for (auto at = found->GetNodeBegin(); at != found->GetNodeEnd(); ++at) {
      EXPECT_TRUE(Is(*at, row, node++));
      EXPECT_FALSE(found->RemoveNode(*at));
    }
  }
}

// clang-format off
constexpr std::pair<GeometryReference (*)(NDomainManager const&), detail::NPrimitive> kReaders[] = {
    {GetPlane, detail::NP_PLANE}, {GetCube, detail::NP_CUBE},
    {GetInwardCube, detail::NP_INWARD_CUBE}, {GetCubeFloor, detail::NP_CUBE_FLOOR},
    {GetSphere, detail::NP_SPHERE}, {GetInwardSphere, detail::NP_INWARD_SPHERE},
    {GetSphereFloor, detail::NP_SPHERE_FLOOR}, {GetArrow, detail::NP_ARROW},
    {GetRing, detail::NP_RING}, {GetMace, detail::NP_MACE}, {GetMapPlanar, detail::NP_MAP_PLANAR},
    {GetMapCylinder, detail::NP_MAP_CYLINDER}, {GetMapRibbon, detail::NP_MAP_RIBBON},
    {GetCameraObject, detail::NP_CAMERA_OBJECT}, {GetCone, detail::NP_CONE},
    {GetInwardDome, detail::NP_INWARD_DOME}, {GetRod, detail::NP_ROD}};  // as the nodes are made
// clang-format on

TEST_F(InternalData, ReadersGiveTheirGeometryAndShareItsSurface) {
  NDomainManager other;
  ASSERT_TRUE(Initialize(m_manager, *m_events));
  ASSERT_TRUE(Initialize(other, *m_events));
  int row = 0;
  for (auto const& [read, primitive] : kReaders) {
    SCOPED_TRACE(row);
    auto const geometry = read(m_manager).Get();
    ASSERT_NE(geometry, nullptr);
    EXPECT_TRUE(Is(*geometry, 0, row++));
    EXPECT_THAT(geometry->GetSurfaces(), ElementsAre(detail::GetPrimitiveSurface(primitive)));
    EXPECT_EQ(geometry->GetSurfaces(), read(other).Get()->GetSurfaces());
  }
  EXPECT_TRUE(Uninitialize(other));
}

std::vector<double> GetColors(NMaterialNode const* material) {
  return {material->GetDiffuseR(),  material->GetDiffuseG(),  material->GetDiffuseB(),
          material->GetEmissiveR(), material->GetEmissiveG(), material->GetEmissiveB()};
}

TEST_F(InternalData, MaterialsHaveTheirColorsNamesAndPatterns) {
  ASSERT_TRUE(Initialize(m_manager, *m_events));
  EXPECT_THAT(GetColors(GetRGBMaterialNode(m_manager, 0)), ElementsAre(0.2, 0, 0, 0.5, 0, 0));
  EXPECT_THAT(GetColors(GetRGBMaterialNode(m_manager, 1)), ElementsAre(0, 0, 0.2, 0, 0, 0.5));
  EXPECT_THAT(GetColors(GetRGBMaterialNode(m_manager, 2)), ElementsAre(0, 0.2, 0, 0, 0.5, 0));
  EXPECT_THAT(GetColors(GetRGBMaterialNode(m_manager, 3)), ElementsAre(0.2, 0.2, 0, 0.5, 0.5, 0));
  NMaterialNode const* const gray = GetRGBMaterialNode(m_manager, 4);
  EXPECT_THAT(GetColors(gray), ElementsAre(0.1, 0.1, 0.1, 0.3, 0.3, 0.3));
  EXPECT_EQ(GetRGBMaterialNode(m_manager, -1), gray);
  EXPECT_EQ(GetWaterMarkNodeMaterial(m_manager, 3), gray);
  EXPECT_EQ(gray->GetName(), L"Gray material for posture");
  EXPECT_EQ(GetUnusedNodeMaterial(m_manager)->GetName(), L"Material for unused node");

  std::set<NTextureMapping*> mappings;
  for (int i = 0; i != 3; ++i) {
    NMaterialNode const* const material = GetWaterMarkNodeMaterial(m_manager, i);
    EXPECT_TRUE(Is(*material, 5, 6 + i));
    EXPECT_EQ(material->GetTransparency(), 0.2);
    ASSERT_THAT(material->GetTextures(), SizeIs(1));
    auto const& [reference, mapping] = material->GetTextures().front();
    auto const texture = reference.Get();
    EXPECT_TRUE(Is(*texture, 6, i));
    EXPECT_EQ(texture->GetOperationType(), 2);
    EXPECT_TRUE(Is(*texture->GetImage(), 7, i));
    mappings.insert(mapping.get());
    auto const& uvw = dynamic_cast<NUVWMapping&>(*mapping);
    EXPECT_EQ(uvw.GetUVWMappingType(), 0x10000000U);

    NPath const file = core::uri::GetFile(texture->GetImage()->GetImageLocator().GetUri());
    EXPECT_TRUE(file.ToString().ends_with(i < 2 ? L"/ywefe" : L"/ewasd"));
    EXPECT_THAT(support::ReadBytes(file), SizeIs(i < 2 ? 14353 : 35329));
#ifdef CORVANTA_WITH_FREEIMAGE
    auto const picture = platform::LoadPicture(file.ToString());
    ASSERT_EQ(picture->GetByteLength(), 40 + 4U * 256 * 256);
    auto const* const pixels = static_cast<unsigned char const*>(picture->GetInfoHeader()) + 40;
    std::set<int> alphas;
    for (int at = 0; at != 4 * 256 * 256; at += 4) {
      ASSERT_THAT(std::vector(pixels + at, pixels + at + 3), ElementsAre(191, 191, 191));
      alphas.insert(pixels[at + 3]);
    }
    EXPECT_GT(alphas.size(), 16U);
#endif
  }
  EXPECT_THAT(mappings, SizeIs(1));
  EXPECT_THAT(m_files.GetLeftovers(), SizeIs(2));
}

TEST_F(InternalData, TheSphereSceneAndTheThumbnailEnvironmentStand) {
  ASSERT_TRUE(Initialize(m_manager, *m_events));
  auto const scene = GetSphereScene(m_manager).Get();
  auto const model = GetSphereModel(m_manager).Get();
  auto const path = GetSphereCamera(m_manager);
  EXPECT_EQ(scene->GetSceneGraph()->GetRoot(), model);
  EXPECT_EQ(model->GetGeometryNode(), GetSphere(m_manager).Get());
  ASSERT_TRUE(IsValid(path));
  EXPECT_EQ(path.GetNode()->GetParent(), model);
  EXPECT_EQ(path.GetGlobalTransform()(3, 0), 8.0f);
  EXPECT_TRUE(Is(*path.GetNode()->GetCameraNode(), 4, 0));
  EXPECT_TRUE(Is(*GetPostureSceneRoot(m_manager), 2, 2));
  EXPECT_EQ(GetPostureSceneRoot(m_manager)->GetParent(), nullptr);

  auto const environment = GetThumbnailEnvironment(m_manager).Get();
  EXPECT_EQ(environment->GetHdrBloom(), 100.0);
  auto const image = environment->GetEnvironmentMap().GetImage();
  EXPECT_TRUE(Is(*image, 7, 3));
  EXPECT_EQ(image->GetImageLocator(), GetDefaultEnvironmentMapImage());
  EXPECT_EQ(environment->GetEnvironmentMap().GetImageType(), environment_map::NEMIT_CUBE);
  EXPECT_TRUE(Is(*environment->GetSceneGraph(), 3, 1));
  EXPECT_TRUE(Is(*environment->GetSceneGraph()->GetRoot(), 2, 3));
  ASSERT_THAT(environment->GetLightEnvs(), SizeIs(1));
  auto const lightEnv = environment->GetLightEnvs()[0].Get();
  ASSERT_THAT(lightEnv->GetLamps(), SizeIs(1));
  EXPECT_EQ(lightEnv->GetLamps()[0]->GetName(), L"default");
  EXPECT_EQ(lightEnv->GetLamps()[0]->GetType(), L"directional");
  auto const room = environment->GetEnvironmentMapModel();
  EXPECT_TRUE(Is(*room, 2, 4));
  EXPECT_EQ(room->GetGeometryNode(), GetInwardCube(m_manager).Get());
  EXPECT_EQ(room->GetScaleX() + room->GetScaleY() + room->GetScaleZ(), 9);
  EXPECT_FALSE(room->DropsShadow() || room->IsSelfshadowed());
  EXPECT_EQ(environment->GetFloorGeometry(), GetCubeFloor(m_manager).Get());

  EXPECT_EQ(GetInternalSceneGraphItemDomain(m_manager), GetDomain(L"scenegraphitem"));
  EXPECT_EQ(GetInternalMaterialDomain(m_manager), GetDomain(L"material"));
}

void ExpectNothing(NDomainManager const& manager) {
  EXPECT_FALSE(GetPlane(manager));
  EXPECT_FALSE(GetSphereScene(manager));
  EXPECT_FALSE(GetSphereModel(manager));
  EXPECT_EQ(GetSphereCamera(manager).GetNode(), nullptr);
  EXPECT_FALSE(GetThumbnailEnvironment(manager));
  EXPECT_EQ(GetPostureSceneRoot(manager), nullptr);
  EXPECT_EQ(GetRGBMaterialNode(manager, 0), nullptr);
  EXPECT_EQ(GetUnusedNodeMaterial(manager), nullptr);
  EXPECT_EQ(GetWaterMarkNodeMaterial(manager, 0), nullptr);
  EXPECT_EQ(GetInternalSceneGraphItemDomain(manager), nullptr);
  EXPECT_EQ(GetInternalMaterialDomain(manager), nullptr);
}

TEST_F(InternalData, ComesGoesAndComesAgain) {
  EXPECT_FALSE(Uninitialize(m_manager));
  ExpectNothing(m_manager);
  EXPECT_TRUE(Uninitialize(m_manager));  // the readers have asked
  EXPECT_FALSE(Uninitialize(m_manager));
  ExpectNothing(m_manager);
  EXPECT_TRUE(Initialize(m_manager, *m_events));
  auto const plane = GetPlane(m_manager).Get();
  EXPECT_FALSE(Initialize(m_manager, *m_events));
  EXPECT_EQ(GetPlane(m_manager).Get(), plane);

  EXPECT_TRUE(Uninitialize(m_manager));
  EXPECT_FALSE(Uninitialize(m_manager));
  ExpectNothing(m_manager);
  EXPECT_EQ(GetDomain(L"geometry")->QueryNode(plane->GetID()), plane);
  auto const old = GetDomain(L"geometry");
  EXPECT_TRUE(Initialize(m_manager, *m_events));
  EXPECT_EQ(CountDomains(), 10U);
  EXPECT_NE(GetDomain(L"geometry"), old);
  EXPECT_NE(GetPlane(m_manager).Get(), plane);
  EXPECT_EQ(GetPlane(m_manager).Get()->GetDomain(), GetDomain(L"geometry"));
}

TEST_F(InternalData, OfAManagerThatHasGoneCountsForNoLaterOne) {
  std::optional<NDomainManager> manager;
  manager.emplace();
  ASSERT_TRUE(Initialize(*manager, *m_events));
  manager.emplace();
  ExpectNothing(*manager);
  ASSERT_TRUE(Initialize(*manager, *m_events));
  manager.emplace();
  EXPECT_FALSE(Uninitialize(*manager));
  EXPECT_TRUE(Initialize(*manager, *m_events));
  EXPECT_TRUE(Uninitialize(*manager));
}

TEST_F(InternalData, ARefusalOrAThrowingListenerLeavesTheDomainsAsTheyWere) {
  for (bool const isSecond : {false, true}) {
    auto const before = GetDomain(L"environment");
    // Takes the id of the posture root as soon as the domain is there.
    m_listener->react = [&](NSignal const&) {
      wchar_t const* const id = L"1B6183D1-8F5A-45f3-B30B-EB0091E23BD4";
      auto const items = GetDomain(L"scenegraphitem");
      if (items->QueryNode(id)) return;
      dynamic_cast<NSceneGraphItemDomain&>(*items).CreateNode<NSceneGraphModelNode>(id);
    };
    EXPECT_FALSE(Initialize(m_manager, *m_events));
    EXPECT_EQ(CountDomains(), isSecond ? 10U : 0U);
    EXPECT_EQ(GetDomain(L"environment"), before);
    int count = 0;
    m_listener->react = [&](NSignal const&) {
      if (++count == 30) throw std::runtime_error("enough");
    };
    EXPECT_THROW(Initialize(m_manager, *m_events), std::runtime_error);
    EXPECT_EQ(CountDomains(), isSecond ? 10U : 0U);
    EXPECT_EQ(GetDomain(L"environment"), before);
    ExpectNothing(m_manager);
    m_listener->react = nullptr;
    EXPECT_TRUE(Initialize(m_manager, *m_events));
    EXPECT_TRUE(Uninitialize(m_manager));
  }
}

TEST_F(InternalData, AListenerCannotInitializeWithin) {
  NDomainManager other;
  bool isAnyDone = false;
  m_listener->react = [&](NSignal const&) {
    isAnyDone = isAnyDone || Initialize(m_manager, *m_events) || Initialize(other, *m_events) ||
                Uninitialize(m_manager) || Uninitialize(other);
    ExpectNothing(m_manager);
  };
  EXPECT_TRUE(Initialize(m_manager, *m_events));
  EXPECT_FALSE(isAnyDone);
  EXPECT_EQ(other.begin(), other.end());
}

TEST_F(InternalData, TwoThreadsMayComeAtOnce) {
  for (int round = 0; round != 20; ++round) {
    NDomainManager shared;
    std::atomic<int> made = 0;
    auto const work = [&] {
      auto const multiplexer = New<NEventMultiplexer>();
      NDomainManager own;
      made += Initialize(own, *multiplexer);
      made += 100 * Initialize(shared, *multiplexer);
      made += Uninitialize(own);
    };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
    EXPECT_EQ(made, 104);
    EXPECT_TRUE(GetRod(shared));
    EXPECT_TRUE(Uninitialize(shared));
  }
}

TEST_F(InternalData, StandsWithoutATemporaryFolder) {
  auto const folder = m_files.GetFolder() / "tmp";
  std::filesystem::remove_all(folder);
  std::ofstream(folder) << "in the way";
  EXPECT_TRUE(Initialize(m_manager, *m_events));
  auto const image =
      GetWaterMarkNodeMaterial(m_manager, 2)->GetTextures().front().first.Get()->GetImage();
  EXPECT_EQ(image->GetImageLocator(), NLocator());
  EXPECT_NE(image->GetImage(), nullptr);
  std::filesystem::remove(folder);
  std::filesystem::create_directory(folder);
}

TEST_F(InternalData, FollowsNoLinkAtTheNamesOfItsFiles) {
  ASSERT_TRUE(Initialize(m_manager, *m_events));
  ASSERT_TRUE(Uninitialize(m_manager));
  NPath const target = m_files.Write("target", "untouched");
  for (auto const& file : m_files.GetLeftovers()) {
    std::filesystem::remove(file);
    std::filesystem::create_symlink(core::text::ToNarrow(target.ToString()), file);
  }
  ASSERT_TRUE(Initialize(m_manager, *m_events));
  EXPECT_EQ(support::ReadBytes(target), "untouched");
  for (auto const& file : m_files.GetLeftovers()) EXPECT_FALSE(std::filesystem::is_symlink(file));
}

using structs::ToVec3;

/// What a mesh adds up to. Each vertex and index counts with its place, modulo 31, plus 1; of a
/// vector the components count once, twice and three times.
struct Row {
  detail::NPrimitive primitive;
  std::size_t vertices, indices;  // as many where each triangle has its own
  int along, against;             // triangles that wind so to the normals of all their vertices
  double points, normals, uvws;
  std::size_t places;
};

// Worked out in double precision, from rules for each mesh that were written down on their own.
// clang-format off
constexpr Row kRows[] = {
    {detail::NP_PLANE        ,    6,    6,    2,    0,    17.000,    -21.000,    24.000,        70},
    {detail::NP_CUBE         ,   36,   36,   12,    0,   466.000,    526.000,     0.000,     10425},
    {detail::NP_INWARD_CUBE  ,   36,   36,   12,    0,   488.000,   -488.000,     0.000,     10425},
    {detail::NP_CUBE_FLOOR   , 5400, 5400,    0, 1800,  -175.000, 172650.000,     0.000, 233263600},
    {detail::NP_SPHERE       , 2880, 2880,  960,    0,  -248.861,   -248.861, 69162.687,  66441796},
    {detail::NP_INWARD_SPHERE, 2880, 2880,  960,    0,  -249.510,    249.510,     0.000,  66441796},
    {detail::NP_SPHERE_FLOOR , 2784, 2784,    0,  928,   -52.133,  88938.000,     0.000,  61997171},
    {detail::NP_INWARD_DOME  , 5952, 5952, 1984,    0, 59084.097,  27174.636,     0.000, 283838976},
    {detail::NP_ROD          ,    8,   24,    8,    0,    25.800,    -20.000,     0.000,      1172},
    {detail::NP_CONE         ,   13,   36,   12,    0,    27.215,    -63.785,     0.000,      2508},
    {detail::NP_ARROW        ,   50,  144,   36,   12,   620.430,     -7.967,     0.000,     52412},
    {detail::NP_MACE         ,   32,  108,   24,   12,   425.939,   -126.369,     0.000,     28143},
    {detail::NP_RING         ,  768, 4608,  704,  832,  -159.078,    -79.457,     0.000,  28258832},
    {detail::NP_MAP_PLANAR   ,    8,   24,    0,    8,     4.400,     72.000,     0.000,      1118},
    {detail::NP_MAP_CYLINDER ,  128,  408,   64,   64,  -958.038,     -8.000,     0.000,    411516},
    {detail::NP_MAP_RIBBON   ,   64,  192,   64,    0,  -512.188,  -1024.277,     0.000,     96888},
    {detail::NP_CAMERA_OBJECT,   13,   48,    3,   13,  -178.500,     39.000,     0.000,      3133},
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
    auto const surface = detail::GetPrimitiveSurface(row.primitive);
    EXPECT_EQ(surface, detail::GetPrimitiveSurface(row.primitive));
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
  for (auto const& [primitive, sense] :
       {std::pair{detail::NP_SPHERE, 1.0f}, {detail::NP_INWARD_SPHERE, -1.0f}}) {
    auto const surface = detail::GetPrimitiveSurface(primitive);
    for (std::size_t v = 0; v != surface->GetCoords().size(); ++v) {
      Vec3 const at = ToVec3(surface->GetCoords()[v]);
      EXPECT_NEAR(at.Length(), 1, 1e-6);
      EXPECT_EQ(ToVec3(surface->GetNormals()[v]) * sense, at);
    }
  }
  auto const ring = detail::GetPrimitiveSurface(detail::NP_RING);
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
}  // namespace corvanta::data::internal
