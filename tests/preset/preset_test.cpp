#include "tests/support/temporary_files.h"
#include "tests/support/view_world.h"

namespace corvanta::test {
namespace {

namespace preset = data::preset;
using LightItem = Pointer<NSceneGraphLightNode>;
using Triple = std::array<double, 3>;

class Preset : public testing::Test, protected support::ViewWorld {
 protected:
  ~Preset() override { data::internal::Uninitialize(manager); }

  LightItem MakeLight(std::wstring const& type = data::domain::light::LT_DIRECTIONAL) {
    LightItem made = Make<NSceneGraphLightNode>();
    auto const light = lights->CreateNode();
    light->SetType(type);
    made->SetLightNode(light);
    root->AddChild(*made);
    return made;
  }
  Vec3 GetGlobalPosition(Item const& placed) const {
    return Apply(NSceneGraphPath<NSceneGraphItemNode>(placed, shown).GetGlobalTransform(), Vec3());
  }

  Pointer<support::AttributeLog> const m_log = ListenToAttributes();
  support::TemporaryFiles const m_files;
};

/// The three attributes "`name`.x`end`" and so on, in order.
Triple Get(NAttributeHost& host, std::wstring const& name, std::wstring const& axes = L"xyz",
           std::wstring const& end = L"") {
  Triple values;
  for (int i = 0; i != 3; ++i) {
    values[i] = host.QueryAttribute(name + L"." + axes[i] + end)->GetValue().GetDouble();
  }
  return values;
}
Vec3 Narrow(Triple const& values) {
  return {static_cast<float>(values[0]), static_cast<float>(values[1]),
          static_cast<float>(values[2])};
}

/// The direction that (0, 0, 1) takes when turned about x, then y, then z.
Vec3 TurnZ(Triple const& degrees) {
  double const r = std::acos(-1.0) / 180;
  auto const [a, b, c] = Triple{degrees[0] * r, degrees[1] * r, degrees[2] * r};
  double const x = std::cos(a) * std::sin(b);
  double const y = -std::sin(a);
  return Narrow({x * std::cos(c) - y * std::sin(c), x * std::sin(c) + y * std::cos(c),
                 std::cos(a) * std::cos(b)});
}

TEST_F(Preset, TheScaleIsFiveTimesTheLongestSideOfTheScene) {
  EXPECT_EQ(preset::GetDefaultEnvironmentModelScale(view), 10.0f);  // nothing there
  root->AddChild(*MakeModel({5, 5, 5}, {6, 7, 8}));
  EXPECT_EQ(preset::GetDefaultEnvironmentModelScale(view), 15.0f);
  scene->SetSceneGraph({});
  EXPECT_EQ(preset::GetDefaultEnvironmentModelScale(view), 10.0f);
}

TEST_F(Preset, LightsGetTheColorsOfTheRig) {
  std::vector<Pointer<NLightNode>> rig;
  for (int i = 0; i != 9; ++i) rig.push_back(lights->CreateNode());
  preset::PresetLight(rig, false);
  preset::PresetLight(rig[0], true);
  preset::PresetCamera(cameras->CreateNode(), true);
  EXPECT_THAT(m_log->writes, IsEmpty());
  EXPECT_EQ(preset::GetDefaultLightCount(), 7U);

  preset::PresetLight(rig, true);
  for (int i = 0; i != 9; ++i) {
    double const color = i < 4 ? 0.1 : i < 7 ? 0.45 : 1.0;
    EXPECT_EQ(Get(*rig[i], L"color", L"rgb"), (Triple{color, color, color}));
    EXPECT_EQ(rig[i]->GetShadowDarkness(), i >= 4 && i < 7 ? 0.2 : 1.0);
  }
  EXPECT_EQ(m_log->writes.size(), 4 * 3 + 3 * 4U);
  m_log->writes.erase(m_log->writes.begin(), m_log->writes.end() - 4);
  EXPECT_THAT(m_log->TakeNames(),
              ElementsAre(L"color.r", L"color.g", L"color.b", L"shadow.darkness"));
}

TEST_F(Preset, LightsStandRoundTheScene) {
  constexpr Triple kPlain[9] = {{70, 0, 0},  {-115, 0, 0},   {65, 60, -180}, {65, -60, 180},
                                {-25, 0, 0}, {160, 60, 180}, {160, -60, 180}};
  constexpr Triple kConverted[9] = {{0, 70, 0},  {0, -115, 0},   {-180, 65, 60}, {180, 65, -60},
                                    {0, -25, 0}, {180, 160, 60}, {180, 160, -60}};
  root->AddChild(*MakeModel({5, 5, 5}, {6, 7, 8}));
  std::vector<LightItem> placed;
  for (int i = 0; i != 9; ++i) placed.push_back(MakeLight());
  LightItem const point = MakeLight(data::domain::light::LT_POINT);
  point->SetRotationX(33);
  placed.push_back(point);
  for (bool const isConverted : {false, true}) {
    shown->SetCoordConversion(isConverted ? tree::CCV_ZUP_TO_YUP : tree::CCV_NONE);
    shown->SetUnit(isConverted ? 0.5 : 1);
    for (bool const isRig : {true, false}) {
      m_log->Take();
      preset::PresetSceneGraphLight(placed, view, shown, isRig);
      for (int i = 0; i != 10; ++i) {
        Triple expected = isConverted ? kConverted[i % 9] : kPlain[i % 9];
        if (!isRig) expected = isConverted ? Triple{0, -60, 90} : Triple{-60, 90, 0};
        if (i == 9) expected = {33, 0, 0};
        EXPECT_EQ(Get(*placed[i], L"rotation"), expected) << i;
        EXPECT_TRUE(placed[i]->TransformIsAbsolute());
        Box3 const box = scene->GetSceneGraph()->GetRoot()->GetBoundingBox({}, {});
        Vec3 const centre = Apply(shown->GetControlTransform(), box.GetCenter());
        float const longest = isConverted ? 1.5f : 3;
        EXPECT_TRUE(Near(GetGlobalPosition(placed[i]), centre + TurnZ(expected) * 2 * longest))
            << i;
      }
      EXPECT_EQ(m_log->writes.size(), 9 * 7 + 4U);
    }
  }
  m_log->Take();
  preset::PresetSceneGraphLight(placed[2], view, shown, true);
  EXPECT_EQ(Get(*placed[2], L"rotation"), kConverted[0]);
  EXPECT_THAT(m_log->TakeNames(),
              ElementsAre(L"rotation.x", L"rotation.y", L"rotation.z", L"transform.isAbsolute",
                          L"translation.x", L"translation.y", L"translation.z"));
}

TEST_F(Preset, TheCameraSeesTheSceneFromTheRightAndAbove) {
  auto const lens = cameras->CreateNode();
  camera->SetCameraNode(lens);
  lens->SetVerticalViewAngle(90);  // so that the distance is the side
  lens->SetHorizontalViewAngle(2 * std::atan(0.5) * 180 / std::acos(-1.0));  // and here twice that
  core::configuration::GetConfiguration().SetLong(core::configuration::CK_VIEW_MODE, 3);
  Model const content = MakeModel({4, 1, -1}, {14, 9, 2});
  root->AddChild(*content);
  struct Row {
    char const* name;
    bool isVertical;
    double depth, unit, distance;
  };
  for (Row const& row :
       {Row{"by height", true, 1, 1, 8}, Row{"by width", false, 1, 1, 20},
        Row{"by depth", true, 10, 1, 30}, Row{"in centimetres", true, 1, 0.01, 0.08}}) {
    SCOPED_TRACE(row.name);
    lens->SetUsesVerticalViewAngleFlag(row.isVertical);
    content->SetScaleZ(row.depth);
    shown->SetUnit(row.unit);
    m_log->Take();
    preset::PresetSceneGraphCamera(camera, view, shown, true);
    Vec3 const centre =
        Vec3(9, 5, static_cast<float>(0.5 * row.depth)) * static_cast<float>(row.unit);
    EXPECT_TRUE(Near(Narrow(Get(*camera, L"interest")), centre));
    Vec3 const away(1 / std::sqrt(3.0f), 2 / 3.0f, 1);
    EXPECT_TRUE(Near(GetGlobalPosition(camera), centre + away * static_cast<float>(row.distance)));
    EXPECT_EQ(Get(*camera, L"up"), (Triple{0, 1, 0}));
    for (auto const* const name : {L"interest", L"translation", L"up"}) {
      EXPECT_EQ(Get(*camera, name), Get(*camera, name, L"xyz", L".saved"));
    }
    EXPECT_TRUE(camera->TransformIsAbsolute());
    EXPECT_EQ(camera->GetNavigationType(), 3);
  }
  core::configuration::GetConfiguration().SetLong(core::configuration::CK_VIEW_MODE, 0);
  std::wstring heard;
  for (std::wstring const& name : m_log->TakeNames()) heard += name + L" ";
  EXPECT_EQ(heard,
            L"interest.x interest.y interest.z translation.x translation.y translation.z up.x up.y "
            L"up.z interest.x.saved interest.y.saved interest.z.saved translation.x.saved "
            L"translation.y.saved translation.z.saved up.x.saved up.y.saved up.z.saved "
            L"transform.isAbsolute cameraNavigation ");
}

TEST_F(Preset, TheEnvironmentIsFilledAnewEachTime) {
  ASSERT_TRUE(data::internal::Initialize(manager, *events));
  root->AddChild(*MakeModel({0, 0, 0}, {1, 2, 3}));
  for (unsigned int round = 1; round != 3; ++round) {
    preset::PresetEnvironment(environment, view, items, images);
    Model const model = environment->GetEnvironmentMapModel();
    EXPECT_EQ(images->GetNodeCount(), 2 * round);
    EXPECT_EQ(items->GetNodeCount(), 3 + round);  // with the root, the camera and the content
    EXPECT_EQ(model->GetDomain(), items.get());
    EXPECT_EQ(Get(*model, L"scale"), (Triple{15, 15, 15}));
    EXPECT_TRUE(model->IsVisible() && !model->DropsShadow() && !model->IsSelfshadowed());
    EXPECT_EQ(model->GetGeometryNode(), data::internal::GetInwardSphere(manager).Get());
    EXPECT_EQ(environment->GetFloorGeometry(), data::internal::GetSphereFloor(manager).Get());
    auto const& map = environment->GetEnvironmentMap();
    EXPECT_EQ(map.GetImageType(), data::environment_map::NEMIT_CUBE);
    EXPECT_EQ(map.GetImage()->GetImageLocator(), data::internal::GetDefaultEnvironmentMapImage());
    EXPECT_EQ(environment->GetFloorImage()->GetImageLocator(),
              data::internal::GetDefaultFloorImage());
  }
}

TEST_F(Preset, WhatIsMissingHasNoEffect) {
  preset::PresetEnvironment(environment, view, items, images);  // without internal data
  EXPECT_EQ(environment->GetEnvironmentMapModel()->GetGeometryNode(), nullptr);
  m_log->Take();
  preset::PresetEnvironment(nullptr, view, items, images);
  preset::PresetEnvironment(environment, view, nullptr, images);
  preset::PresetSceneGraphCamera(camera, view, shown, true);  // no camera node
  preset::PresetSceneGraphCamera(nullptr, nullptr, nullptr, true);
  preset::PresetSceneGraphLight(Make<NSceneGraphLightNode>(), view, shown, true);
  preset::PresetSceneGraphLight(std::vector<LightItem>{nullptr}, view, shown, true);
  preset::PresetSceneGraphLight(std::vector{MakeLight()}, view, nullptr, true);
  preset::PresetLight(std::vector<Pointer<NLightNode>>{nullptr}, true);
  EXPECT_THAT(m_log->TakeNames(), ElementsAre(L"type"));  // of the light that was made
}

using Distances = std::pair<double, double>;

class ViewClipDistances : public testing::Test, protected support::ViewWorld {
 protected:
  ~ViewClipDistances() override { data::internal::Uninitialize(manager); }
  Distances Get() const { return item::GetClipDistances(GetPath(), *view); }
  Distances GetFor(Vec3 const& min, Vec3 const& max) const {
    return item::GetClipDistances(GetPath(), Box3(min, max));
  }

  support::TemporaryFiles const m_files;
};

TEST_F(ViewClipDistances, AreZeroWhereSomethingIsMissing) {
  Model const surroundings = MakeModel({-1, -1, -1}, {1, 1, 1});
  Move(*camera, 0, 0, 5);
  EXPECT_EQ(Get(), Distances(0, 0));  // no model of the environment
  environment->SetEnvironmentMapModel(surroundings);
  EXPECT_GT(Get().second, 0);
  scene->SetEnvironment({});
  EXPECT_EQ(Get(), Distances(0, 0));
  scene->SetEnvironment(environment);
  scene->SetSceneGraph({});
  EXPECT_EQ(Get(), Distances(0, 0));
  view->SetScene({});
  EXPECT_EQ(Get(), Distances(0, 0));
}

TEST_F(ViewClipDistances, TakeInTheEnvironmentOnBothSidesOfTheFloor) {
  Move(*camera, 3, 40, 60);
  root->AddChild(*MakeModel({-2, -1, -2}, {2, 25, 1}));
  struct Row {
    float low, high, y;  // of the model, and what it adds
  };
  // About the floor, above it, reaching deeper than high, and below it.
  for (Row const& row : {Row{-10, 10, 10.5f}, {5, 10, 10.5f}, {-90, 20, 21}, {-40, -20, 21}}) {
    SCOPED_TRACE(row.low);
    Model const model = MakeModel({-10, row.low, 0}, {10, row.high, 30});
    environment->SetEnvironmentMapModel(model);
    float const top = std::max(row.y, 25.0f);
    EXPECT_EQ(Get(), GetFor({-10.5f, -row.y, -2}, {10.5f, top, 31.5f}));
    model->SetScaleX(2);
    model->SetTranslationZ(-10);
    EXPECT_EQ(Get(), GetFor({-21, -row.y, -10.5f}, {21, top, 21}));
  }
  // A model without a shape adds nothing.
  environment->SetEnvironmentMapModel(Make<NSceneGraphModelNode>());
  EXPECT_EQ(Get(), GetFor({-2, -1, -2}, {2, 25, 1}));
}

TEST_F(ViewClipDistances, TakeInThePosturesOfTheCamerasManager) {
  environment->SetEnvironmentMapModel(MakeModel({-1, -1, -1}, {1, 1, 1}));
  Move(*camera, 0, 0, 100);
  auto const without = GetFor({-1.05f, -1.05f, -1.05f}, {1.05f, 1.05f, 1.05f});
  EXPECT_EQ(Get(), without);
  ASSERT_TRUE(data::internal::Initialize(manager, *events));
  EXPECT_EQ(Get(), without);  // no postures yet
  auto* const postures = data::internal::GetPostureSceneRoot(manager);
  auto const handle =
      data::internal::GetInternalSceneGraphItemDomain(manager)->CreateNode<NSceneGraphModelNode>();
  handle->SetGeometryNode(data::internal::GetSphere(manager));
  handle->SetTranslationZ(-300);
  ASSERT_TRUE(postures->AddChild(*handle));
  EXPECT_EQ(Get(), GetFor({-1.05f, -1.05f, -301}, {1.05f, 1.05f, 1.05f}));
  // Without a camera item there is no manager to ask, and the view matrix is the identity.
  NSceneGraphPath<NSceneGraphCameraNode> const none;
  EXPECT_EQ(item::GetClipDistances(none, *view),
            item::GetClipDistances(none, Box3({0, 0, -1.05f}, {0, 0, 1.05f})));
  root->RemoveChild(*camera);
  EXPECT_ANY_THROW(Get());  // the path is broken
}

}  // namespace
}  // namespace corvanta::test
