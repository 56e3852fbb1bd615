#include "corvanta/data/internal/internal_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "corvanta/core/domain/NDomainManager.h"
#include "corvanta/data/domain/camera/NCameraNode.h"
#include "corvanta/data/domain/environment/NEnvironmentDomain.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/domain/material/NMaterialDomain.h"
#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/environment_map/NEnvironmentMap.h"
#include "corvanta/data/events/NEventMultiplexer.h"
#include "corvanta/data/internal/built_in_images.h"
#include "corvanta/platform/picture.h"
#include "tests/support/temporary_files.h"

namespace corvanta::data::internal {
namespace {

using core::domain::NDomainBase;
using core::domain::NDomainManager;
using core::locator::NLocator;
using core::node::NNodeID;
using core::uri::NUri;
using domain::material::NMaterialNode;
using testing::ElementsAre;
using testing::SizeIs;

/// Does something at every attribute change and every new surface.
class Listener final : public events::NEventListener {
 public:
  std::function<void()> react = [] {};

 private:
  void OnAttributeChange(core::attribute::NAttributeHost&,
                         core::attribute::NAttribute const&) override {
    react();
  }
  void OnGeometryChange(domain::geometry::NGeometryNode const&, domain::geometry::NSurface const&,
                        domain::geometry::NGeometryChangeType) override {
    react();
  }
  void OnGeometryChange(domain::scenegraph::item::NSceneGraphModelNode const&,
                        boost::intrusive_ptr<domain::geometry::NGeometryNode> const&) override {
    react();
  }
};

class InternalData : public testing::Test {
 protected:
  InternalData() { m_events->AddObserver(*m_listener); }
  ~InternalData() override { Uninitialize(m_manager); }

  boost::intrusive_ptr<NDomainBase> GetDomain(std::wstring const& type) const {
    return m_manager.QueryDomain(NLocator(NUri::CreateInternalUri(L"/" + type)));
  }
  std::size_t CountDomains() const { return std::distance(m_manager.begin(), m_manager.end()); }

  support::TemporaryFiles const m_files;
  NDomainManager m_manager;
  boost::intrusive_ptr<events::NEventMultiplexer> const m_events{new events::NEventMultiplexer};
  boost::intrusive_ptr<Listener> const m_listener{new Listener};
};

struct DomainRow {
  wchar_t const* type;
  std::vector<wchar_t const*> ids;  // in the order of creation
};

std::vector<DomainRow> const kDomains = {
    {L"geometry",
     {L"992E0C88-0A64-40ba-9ECE-A9E44BF69690", L"DBCE9553-6164-46d3-92B4-C50A0B8EB370",
      L"88E76818-2B56-4e05-BEED-A7843651C776", L"1BC23DCE-1E61-4e9b-958F-CFD5DBB5048A",
      L"1DDD438D-3A2C-469b-8CB3-12953B875A89", L"78BCFC04-90F3-4765-984C-B17EC5033A7C",
      L"E799E583-64B2-418b-857E-BCCF9E12AB9C", L"97B78198-8050-435e-A5C6-1DC6FEB4DD29",
      L"A6DBAEFA-6E97-4041-89D9-151603C41E1C", L"725F84D5-C381-4571-BC16-0C3C1A3E1F8A",
      L"1C8BDE8F-0EC7-41d2-B467-F25AE0B93291", L"133250BB-5059-4d10-B998-0572392FC581",
      L"4F8C28AD-CFC6-4cf2-8B93-BA8FFADDB6EE", L"A5D4EFFA-65B4-4b85-8667-FA48630F3433",
      L"4E5A00F2-5FBD-4b00-99A3-7D31BC601B50", L"F240DF53-A9A5-46c5-B8EA-AF211B59BED6",
      L"843F1FCB-AFB2-4a22-9EEE-4D89F41D46D8"}},
    {L"scene", {L"747A8C87-A159-4ea3-9146-DCDC33A5C6D1"}},
    {L"scenegraphitem",
     {L"545C467D-F26E-48cc-AEC2-781B7F7F2482", L"05F1A0AC-7211-4680-90BA-284A1B41E1B6",
      L"1B6183D1-8F5A-45f3-B30B-EB0091E23BD4", L"F41DC0AD-FC34-4dbd-81E6-6B2CE0E46A5A",
      L"F1DB67C5-B616-4a68-BD91-B1740D479933"}},
    {L"scenegraphtree",
     {L"C7B132A5-7374-4ae0-ABB9-DCE35E3C8E86", L"B4EBDF45-9F39-40b0-A587-5C449241FD68"}},
    {L"camera", {L"1656948F-1F9E-4f63-A9DD-D94733A73439"}},
    {L"material",
     {L"71E0BBED-6C6A-47f3-8EBF-9F089BF04C12", L"C25BB2EA-9789-416b-803B-7D01ABB6A184",
      L"9FBC349D-5D34-490e-9E51-D8B81E0C3B33", L"84085B5A-439A-4c7f-B10A-40F5714C042E",
      L"2F9342DE-9368-457d-B2EB-C1D5E739E76A", L"6770FCAE-3E0C-4c6b-8861-5E15E675A43A",
      L"584E3835-F0E7-42f1-BD82-F3644FF4D824", L"80596897-B17C-4dd2-93AE-0A5C737EF638",
      L"20A1C7EA-5273-4f20-99D1-0C4C706C168C"}},
    {L"texture",
     {L"9E3B921F-0C97-4cfb-B7C8-22BF940B159A", L"8DCE98BA-3D16-4d65-A14E-317EEED9419D",
      L"4A273189-2A86-4882-8286-DACAE9286575"}},
    {L"image",
     {L"CEBDEB7B-8850-4ec4-AE2E-767F0614078E", L"6107FA33-6D31-42f1-B8CC-ABB9F7D23766",
      L"5501B09A-3382-4e1a-8A4F-802E6ABC9C23", L"AD7357E1-D17E-4eb3-AECA-637157A3FCC5"}},
    {L"lightenvironment", {L"00D73770-B33F-49f9-A7AC-D8F98F1E91F6"}},
    {L"environment", {L"8C8872CB-3B5B-41f7-9D42-A993EF9716C4"}},
};

TEST_F(InternalData, StandsInTenReadOnlyDomainsUnderFixedIds) {
  ASSERT_TRUE(Initialize(m_manager, *m_events));
  EXPECT_EQ(CountDomains(), 10U);
  for (auto const& [locator, entry] : m_manager) EXPECT_EQ(entry.text, L"Internal");
  for (auto const& [type, ids] : kDomains) {
    auto const found = GetDomain(type);
    ASSERT_NE(found, nullptr) << core::text::ToNarrow(type);
    EXPECT_EQ(found->GetName(), type);
    EXPECT_EQ(found->GetType(), std::wstring(type));
    EXPECT_TRUE(found->IsReadOnly());
    std::vector<NNodeID> nodes;
    for (auto at = found->GetNodeBegin(); at != found->GetNodeEnd(); ++at) {
      nodes.push_back(at->GetID());
    }
    EXPECT_EQ(nodes, std::vector<NNodeID>(ids.begin(), ids.end())) << core::text::ToNarrow(type);
    EXPECT_FALSE(found->RemoveNode(*found->QueryNode(ids.back())));
  }
}

constexpr std::pair<GeometryReference (*)(NDomainManager const&), wchar_t const*> kGeometries[] = {
    {GetPlane, L"992E0C88-0A64-40ba-9ECE-A9E44BF69690"},
    {GetCube, L"DBCE9553-6164-46d3-92B4-C50A0B8EB370"},
    {GetInwardCube, L"88E76818-2B56-4e05-BEED-A7843651C776"},
    {GetCubeFloor, L"1BC23DCE-1E61-4e9b-958F-CFD5DBB5048A"},
    {GetSphere, L"1DDD438D-3A2C-469b-8CB3-12953B875A89"},
    {GetInwardSphere, L"78BCFC04-90F3-4765-984C-B17EC5033A7C"},
    {GetSphereFloor, L"E799E583-64B2-418b-857E-BCCF9E12AB9C"},
    {GetArrow, L"97B78198-8050-435e-A5C6-1DC6FEB4DD29"},
    {GetRing, L"A6DBAEFA-6E97-4041-89D9-151603C41E1C"},
    {GetMace, L"725F84D5-C381-4571-BC16-0C3C1A3E1F8A"},
    {GetCone, L"4E5A00F2-5FBD-4b00-99A3-7D31BC601B50"},
    {GetInwardDome, L"F240DF53-A9A5-46c5-B8EA-AF211B59BED6"},
    {GetMapPlanar, L"1C8BDE8F-0EC7-41d2-B467-F25AE0B93291"},
    {GetMapCylinder, L"133250BB-5059-4d10-B998-0572392FC581"},
    {GetMapRibbon, L"4F8C28AD-CFC6-4cf2-8B93-BA8FFADDB6EE"},
    {GetCameraObject, L"A5D4EFFA-65B4-4b85-8667-FA48630F3433"},
    {GetRod, L"843F1FCB-AFB2-4a22-9EEE-4D89F41D46D8"},
};
/// Of the meshes in the same order; together they tell all seventeen apart.
constexpr std::pair<std::size_t, float> kVerticesAndFirstX[] = {
    {6, 0},     {36, -1},    {36, -1},     {5400, -1},  {2880, 0}, {2880, 0},
    {2784, 0},  {50, 0},     {768, 0.02f}, {32, 0},     {13, 0},   {5952, 0},
    {8, -0.5f}, {128, 0.5f}, {64, 0.5f},   {13, -0.5f}, {8, 0}};

TEST_F(InternalData, ReadersGiveTheirGeometryAndShareItsSurface) {
  NDomainManager other;
  ASSERT_TRUE(Initialize(m_manager, *m_events));
  ASSERT_TRUE(Initialize(other, *m_events));
  std::set<domain::geometry::NSurface const*> surfaces;
  for (std::size_t i = 0; i != std::size(kGeometries); ++i) {
    auto const& [read, id] = kGeometries[i];
    auto const geometry = read(m_manager).Get();
    ASSERT_NE(geometry, nullptr);
    EXPECT_EQ(geometry->GetID(), NNodeID(id));
    ASSERT_THAT(geometry->GetSurfaces(), SizeIs(1));
    EXPECT_EQ(geometry->GetSurfaces(), read(other).Get()->GetSurfaces());
    domain::geometry::NSurface const& surface = **geometry->GetSurfaces().begin();
    EXPECT_EQ(surface.GetCoords().size(), kVerticesAndFirstX[i].first) << i;
    EXPECT_EQ(surface.GetCoords()[0].x, kVerticesAndFirstX[i].second) << i;
    surfaces.insert(&surface);
  }
  EXPECT_THAT(surfaces, SizeIs(17));
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
  EXPECT_EQ(GetWaterMarkNodeMaterial(m_manager, -1), gray);
  EXPECT_EQ(gray->GetName(), L"Gray material for posture");
  EXPECT_EQ(GetRGBMaterialNode(m_manager, 1)->GetName(), L"Blue material for posture");
  EXPECT_EQ(GetUnusedNodeMaterial(m_manager)->GetName(), L"Material for unused node");

  std::set<domain::material::texture_mapping::NTextureMapping*> mappings;
  for (int i = 0; i != 3; ++i) {
    NMaterialNode const* const material = GetWaterMarkNodeMaterial(m_manager, i);
    EXPECT_EQ(material->GetID(), NNodeID(kDomains[5].ids[6 + i]));
    EXPECT_EQ(material->GetTransparency(), 0.2);
    ASSERT_THAT(material->GetTextures(), SizeIs(1));
    auto const& [reference, mapping] = material->GetTextures().front();
    auto const texture = reference.Get();
    EXPECT_EQ(texture->GetID(), NNodeID(kDomains[6].ids[i]));
    EXPECT_EQ(texture->GetOperationType(), 2);
    EXPECT_EQ(texture->GetImage()->GetID(), NNodeID(kDomains[7].ids[i]));
    mappings.insert(mapping.get());
    auto const& uvw = dynamic_cast<domain::material::texture_mapping::NUVWMapping&>(*mapping);
    EXPECT_EQ(uvw.GetUVWMappingType(), 0x10000000U);

    core::uri::NPath const file =
        core::uri::GetFile(texture->GetImage()->GetImageLocator().GetUri());
    EXPECT_TRUE(file.ToString().ends_with(i < 2 ? L"/ywefe" : L"/ewasd"));
    EXPECT_THAT(support::ReadBytes(file), SizeIs(i < 2 ? 14353 : 35329));
#ifdef CORVANTA_WITH_FREEIMAGE
    unsigned width = 0, height = 0;
    EXPECT_TRUE(platform::GetPictureSize(file.ToString(), width, height));
    EXPECT_EQ(std::pair(width, height), std::pair(256U, 256U));
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
  EXPECT_EQ(path.GetNode()->GetCameraNode()->GetID(), NNodeID(kDomains[4].ids[0]));
  EXPECT_EQ(GetPostureSceneRoot(m_manager)->GetID(), NNodeID(kDomains[2].ids[2]));
  EXPECT_EQ(GetPostureSceneRoot(m_manager)->GetParent(), nullptr);

  auto const environment = GetThumbnailEnvironment(m_manager).Get();
  EXPECT_EQ(environment->GetHdrBloom(), 100.0);
  auto const image = environment->GetEnvironmentMap().GetImage();
  EXPECT_EQ(image->GetID(), NNodeID(kDomains[7].ids[3]));
  EXPECT_EQ(image->GetImageLocator(), GetDefaultEnvironmentMapImage());
  EXPECT_EQ(environment->GetEnvironmentMap().GetImageType(), environment_map::NEMIT_CUBE);
  EXPECT_EQ(environment->GetSceneGraph()->GetID(), NNodeID(kDomains[3].ids[1]));
  EXPECT_EQ(environment->GetSceneGraph()->GetRoot()->GetID(), NNodeID(kDomains[2].ids[3]));
  ASSERT_THAT(environment->GetLightEnvs(), SizeIs(1));
  auto const lightEnv = environment->GetLightEnvs()[0].Get();
  ASSERT_THAT(lightEnv->GetLamps(), SizeIs(1));
  EXPECT_EQ(lightEnv->GetLamps()[0]->GetName(), L"default");
  EXPECT_EQ(lightEnv->GetLamps()[0]->GetType(), L"directional");
  auto const room = environment->GetEnvironmentMapModel();
  EXPECT_EQ(room->GetID(), NNodeID(kDomains[2].ids[4]));
  EXPECT_EQ(room->GetGeometryNode(), GetInwardCube(m_manager).Get());
  EXPECT_THAT((std::vector{room->GetScaleX(), room->GetScaleY(), room->GetScaleZ()}),
              ElementsAre(3, 3, 3));
  EXPECT_FALSE(room->DropsShadow() || room->IsSelfshadowed());
  EXPECT_EQ(environment->GetFloorGeometry(), GetCubeFloor(m_manager).Get());

  EXPECT_EQ(GetInternalSceneGraphItemDomain(m_manager), GetDomain(L"scenegraphitem"));
  EXPECT_EQ(GetInternalMaterialDomain(m_manager), GetDomain(L"material"));
  EXPECT_NE(GetInternalSceneGraphItemDomain(m_manager)
                ->CreateNode<domain::scenegraph::item::NSceneGraphModelNode>(NNodeID()),
            nullptr);  // as a posture does
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
  EXPECT_TRUE(Uninitialize(m_manager));  // the readers' entry
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

TEST_F(InternalData, AListenerMayThrowAtAnyEvent) {
  int count = 0;
  m_listener->react = [&] { ++count; };
  NDomainManager other;
  ASSERT_TRUE(Initialize(other, *m_events));
  EXPECT_TRUE(Uninitialize(other));
  int const events = count;
  ASSERT_GT(events, 50);
  for (int at = 0; at != events; ++at) {
    count = 0;
    m_listener->react = [&] {
      if (count++ == at) throw std::runtime_error("enough");
    };
    EXPECT_THROW(Initialize(m_manager, *m_events), std::runtime_error) << at;
    ASSERT_EQ(CountDomains(), 0U) << at;
    ExpectNothing(m_manager);
  }
  m_listener->react = [] {};
  EXPECT_TRUE(Initialize(m_manager, *m_events));
}

TEST_F(InternalData, ARefusalLeavesTheDomainsAsTheyWere) {
  for (bool const isSecond : {false, true}) {
    auto const before = GetDomain(L"environment");
    // Takes the id of the posture root as soon as the domain is there.
    m_listener->react = [&] {
      auto const items = GetDomain(L"scenegraphitem");
      if (items->QueryNode(kDomains[2].ids[2])) return;
      dynamic_cast<domain::scenegraph::item::NSceneGraphItemDomain&>(*items)
          .CreateNode<domain::scenegraph::item::NSceneGraphModelNode>(kDomains[2].ids[2]);
    };
    EXPECT_FALSE(Initialize(m_manager, *m_events));
    EXPECT_EQ(CountDomains(), isSecond ? 10U : 0U);
    EXPECT_EQ(GetDomain(L"environment"), before);
    ExpectNothing(m_manager);
    m_listener->react = [] {};
    EXPECT_TRUE(Initialize(m_manager, *m_events));
    EXPECT_TRUE(Uninitialize(m_manager));
  }
}

TEST_F(InternalData, AListenerCannotInitializeWithin) {
  NDomainManager other;
  bool isAnyDone = false;
  m_listener->react = [&] {
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
      boost::intrusive_ptr<events::NEventMultiplexer> const multiplexer(
          new events::NEventMultiplexer);
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
  core::uri::NPath const target = m_files.Write("target", "untouched");
  for (auto const& file : m_files.GetLeftovers()) {
    std::filesystem::remove(file);
    std::filesystem::create_symlink(core::text::ToNarrow(target.ToString()), file);
  }
  ASSERT_TRUE(Initialize(m_manager, *m_events));
  EXPECT_EQ(support::ReadBytes(target), "untouched");
  for (auto const& file : m_files.GetLeftovers()) EXPECT_FALSE(std::filesystem::is_symlink(file));
}

}  // namespace
}  // namespace corvanta::data::internal
