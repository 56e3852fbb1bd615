#include "tests/support/world.h"

namespace corvanta::data::domain::environment {
namespace {

using LightEnvRef = NNodeReference<NLightEnvNode>;
using LightPath = NSceneGraphPath<NSceneGraphLightNode>;

class Environment : public testing::Test, protected support::World {
 protected:
  Pointer<NEnvironmentNode> node = environments->CreateNode();
  Pointer<support::EventLog> recorder = Listen();

  Pointer<NLightEnvNode> MakeLightEnv() { return lightEnvs->CreateNode(); }
};

TEST_F(Environment, ListsLightEnvironmentsOnceInOrderOfAdding) {
  auto const a = MakeLightEnv(), b = MakeLightEnv();
  recorder->react = [&](NSignal const& signal) {
    auto const& now = node->GetLightEnvs();
    EXPECT_EQ(std::count(now.begin(), now.end(),
                         LightEnvRef(dynamic_cast<NLightEnvNode const&>(*signal.other))),
              signal.kind == data::events::NSK_ADD_LIGHT_ENV);
  };
  EXPECT_TRUE(node->AddLightEnv(*b));
  EXPECT_TRUE(node->AddLightEnv(*a));
  EXPECT_FALSE(node->AddLightEnv(*b));
  EXPECT_FALSE(node->AddLightEnv(LightEnvRef()));
  EXPECT_THAT(node->GetLightEnvs(), ElementsAre(LightEnvRef(*b), LightEnvRef(*a)));
  EXPECT_THAT(recorder->Take(), ElementsAre("addLightEnv", "addLightEnv"));

  EXPECT_TRUE(node->RemoveLightEnv(node->GetLightEnvs()[0]));
  EXPECT_FALSE(node->RemoveLightEnv(*b));
  EXPECT_THAT(node->GetLightEnvs(), ElementsAre(LightEnvRef(*a)));
  EXPECT_THAT(recorder->Take(), ElementsAre("removeLightEnv"));
}

TEST_F(Environment, KeepsALightEnvironmentThatHasGone) {
  auto lightEnv = MakeLightEnv();
  LightEnvRef const reference(*lightEnv);
  node->AddLightEnv(reference);
  lightEnvs->RemoveNode(*lightEnv);
  lightEnv.reset();
  recorder->Take();
  EXPECT_EQ(node->GetLightEnvs().size(), 1u);
  EXPECT_FALSE(node->AddLightEnv(reference));
  EXPECT_TRUE(node->RemoveLightEnv(reference));
  EXPECT_FALSE(node->AddLightEnv(reference));
  EXPECT_THAT(node->GetLightEnvs(), IsEmpty());
  EXPECT_THAT(recorder->Take(), IsEmpty());
}

TEST_F(Environment, AListenerMayUndoWhatItHearsOrDropTheNode) {
  auto const lightEnv = MakeLightEnv();
  recorder->react = [&](NSignal const&) {
    recorder->react = nullptr;
    EXPECT_TRUE(node->RemoveLightEnv(*lightEnv));
  };
  EXPECT_TRUE(node->AddLightEnv(*lightEnv));
  EXPECT_THAT(node->GetLightEnvs(), IsEmpty());
  EXPECT_THAT(recorder->Take(), ElementsAre("addLightEnv", "removeLightEnv"));

  Pointer<environment_map::NEnvironmentMap> const map(&node->GetEnvironmentMap());
  node->SetEnvironmentMapRotationX(30.0);
  recorder->react = [&](NSignal const& signal) {
    environments->RemoveNode(*node);
    node.reset();
    EXPECT_EQ(dynamic_cast<NEnvironmentNode const&>(*signal.node).GetLightEnvs().size(), 1u);
  };
  EXPECT_TRUE(node.get()->AddLightEnv(*lightEnv));
  EXPECT_EQ(node, nullptr);
  // The map lives on, and nobody turns it or hears of it.
  EXPECT_EQ(map->GetTransform()->GetTransform(), Matrix());
  recorder->react = nullptr;
  recorder->Take();
  map->SetImageType(environment_map::NEMIT_SQUARE);
  EXPECT_THAT(recorder->Take(), IsEmpty());
}

TEST_F(Environment, TurnsItsMapByItsAttributes) {
  environment_map::NEnvironmentMap& map = node->GetEnvironmentMap();
  EXPECT_EQ(map.GetTransform()->GetTransform(), Matrix());
  node->SetEnvironmentMapRotationX(30.0);
  node->SetEnvironmentMapRotationY(-45.0);
  node->SetEnvironmentMapRotationZ(10.0);
  Matrix const expected(VX_Math::CreateQuaternion(Vec3(30.0f, -45.0f, 10.0f), false));
  EXPECT_EQ(map.GetTransform()->GetTransform(), expected);
  EXPECT_THAT(recorder->Take(), IsEmpty());
  map.SetImageType(map.GetImageType());
  map.SetImage(*images->CreateNode());
  EXPECT_THAT(recorder->Take(),
              ElementsAre("environmentMapImageTypeChange", "environmentMapImageChange"));
}

TEST_F(Environment, TellsOfTheFloorAndOfNothingElse) {
  auto const image = images->CreateNode();
  auto const geometry = geometries->CreateNode();
  node->SetFloorImage(*image);
  node->SetFloorImage(node->GetFloorImageRef());
  node->SetFloorGeometry(*geometry);
  node->SetFloorGeometry(node->GetFloorGeometryRef());
  EXPECT_EQ(node->GetFloorImage(), image);
  EXPECT_EQ(node->GetFloorGeometry(), geometry);
  EXPECT_THAT(recorder->Take(), ElementsAre("floorImageChange", "floorImageChange",
                                            "floorGeometryChange", "floorGeometryChange"));

  node->Set2DImage(*image);
  node->SetEnvironmentMapModel({});
  LightPath const path(*Make<NSceneGraphLightNode>(), {});
  EXPECT_TRUE(node->AddLight(path));
  EXPECT_FALSE(node->AddLight(path));
  EXPECT_EQ(node->GetLights().size(), 1u);
  EXPECT_TRUE(node->RemoveLight(*node->GetLights().begin()));
  EXPECT_FALSE(node->RemoveLight(path));
  EXPECT_EQ(node->Get2DImage(), image);
  EXPECT_EQ(node->GetEnvironmentMapModel(), nullptr);
  EXPECT_THAT(recorder->Take(), IsEmpty());
}

TEST_F(Environment, ACopyTakesEverythingAndTellsOfTheMapAlone) {
  auto const image = images->CreateNode(), floor = images->CreateNode();
  auto const geometry = geometries->CreateNode();
  auto const lightEnv = MakeLightEnv();
  auto const light = Make<NSceneGraphLightNode>();
  auto const tree = trees->CreateNode();
  node->SetSceneGraph(*tree);
  node->AddLight(LightPath(*light, *tree));
  node->AddLightEnv(*lightEnv);
  node->Set2DImage(*image);
  node->GetEnvironmentMap().SetImage(*image);
  node->GetEnvironmentMap().SetImageType(environment_map::NEMIT_RECTANGULAR);
  node->SetFloorImage(*floor);
  node->SetFloorGeometry(*geometry);
  auto const target = environments->CreateNode();
  target->AddLight(LightPath(*light, {}));
  target->AddLightEnv(*MakeLightEnv());
  recorder->Take();

  // What a listener does to the source comes too late.
  recorder->react = [&](NSignal const& signal) {
    EXPECT_EQ(signal.node, target.get());
    EXPECT_EQ(target->GetFloorImage(), nullptr);
    recorder->react = nullptr;
    node->SetFloorImage({});
    recorder->Take();
  };
  node->CopyTo(*target);
  EXPECT_THAT(recorder->Take(), ElementsAre("environmentMapImageChange"));
  EXPECT_EQ(target->GetSceneGraph(), tree);
  EXPECT_THAT(target->GetLights(), ElementsAre(LightPath(*light, *tree)));
  EXPECT_THAT(target->GetLightEnvs(), ElementsAre(LightEnvRef(*lightEnv)));
  EXPECT_EQ(target->Get2DImage(), image);
  EXPECT_EQ(target->GetEnvironmentMap().GetImage(), image);
  EXPECT_EQ(target->GetEnvironmentMap().GetImageType(), environment_map::NEMIT_RECTANGULAR);
  EXPECT_EQ(target->GetFloorImage(), floor);
  EXPECT_EQ(target->GetFloorGeometry(), geometry);

  target->CopyTo(*target);
  EXPECT_THAT(recorder->Take(),
              ElementsAre("environmentMapImageTypeChange", "environmentMapImageChange"));
  EXPECT_EQ(target->GetLights().size(), 1u);
  EXPECT_EQ(target->GetLightEnvs().size(), 1u);
  EXPECT_EQ(target->GetFloorImage(), floor);
}

TEST(Scene, TellsOfTreeAndEnvironmentWithTheOldOne) {
  support::World world;
  auto const scene = world.scenes->CreateNode();
  EXPECT_EQ(scene->GetEnvironment(), nullptr);
  EXPECT_EQ(scene->GetSceneGraph(), nullptr);
  auto const log = world.Listen();
  using Names = core::name::NNamedObject const*;
  std::vector<std::pair<Names, Names>> changes;  // old and new
  log->react = [&](NSignal const& signal) {
    if (signal.kind == events::NSK_ENVIRONMENT_CHANGE) {
      changes.emplace_back(signal.other, scene->GetEnvironment().get());
    }
  };
  auto a = world.environments->CreateNode();
  scene->SetEnvironment(*a);
  scene->SetEnvironment(scene->GetEnvironmentRef());
  scene->SetEnvironment({});
  EXPECT_THAT(changes, ElementsAre(testing::Pair(nullptr, a.get()), testing::Pair(a.get(), a.get()),
                                   testing::Pair(a.get(), nullptr)));
  log->Take();
  scene->SetSceneGraph(*world.trees->CreateNode());
  EXPECT_THAT(log->Take(), testing::Contains("sceneGraphTreeChange").Times(1));

  scene->SetEnvironment(*a);
  log->Take();
  world.environments->RemoveNode(*a);
  a.reset();
  EXPECT_EQ(scene->GetEnvironment(), nullptr);
  EXPECT_TRUE(scene->GetEnvironmentRef());
  EXPECT_THAT(log->Take(), IsEmpty());
}

/// Two multiplexers, each of which a domain has or hasn't.
template <class First, class Second, class Make>
void ExpectAttached(Make const& make) {
  auto const first = New<First>();
  auto const second = New<Second>();
  for (int which = 0; which != 4; ++which) {
    auto const domain = make(which & 1 ? first.get() : nullptr, which & 2 ? second.get() : nullptr);
    auto const node = domain->CreateNode();
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->AddObserver(*first), (which & 1) == 0);
    EXPECT_EQ(node->AddObserver(*second), (which & 2) == 0);
  }
}

TEST(EnvironmentDomain, AttachesTheMultiplexersThatItHas) {
  ExpectAttached<events::environment_map_change::NMultiplexer, events::environment::NMultiplexer>(
      [](auto* maps, auto* environments) {
        return New<NEnvironmentDomain>(nullptr, nullptr, maps, environments);
      });
}

TEST(SceneDomain, AttachesTheMultiplexersThatItHas) {
  ExpectAttached<events::scene_graph_tree_host::NMultiplexer, events::scene::NMultiplexer>(
      [](auto* hosts, auto* scenes) { return New<NSceneDomain>(nullptr, nullptr, hosts, scenes); });
}

}  // namespace
}  // namespace corvanta::data::domain::environment
