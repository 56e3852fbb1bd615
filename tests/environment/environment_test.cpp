#include "tests/support/world.h"

namespace corvanta::data::domain::environment {
namespace {

using light_env::NLightEnvNode;
using scenegraph::item::NSceneGraphLightNode;
using LightEnvRef = NNodeReference<NLightEnvNode>;
using LightPath = scenegraph::NSceneGraphPath<NSceneGraphLightNode>;

class Recorder final : public events::environment::NListener,
                       public events::environment_map_change::NListener {
 public:
  std::vector<std::string> heard;
  std::function<void(NEnvironmentNode const&)> react;

  std::vector<std::string> Take() { return std::exchange(heard, {}); }

 private:
  void OnFloorImageChange(NEnvironmentNode const& node) override { Hear("floor image", node); }
  void OnFloorGeometryChange(NEnvironmentNode const& node) override {
    Hear("floor geometry", node);
  }
  void OnAddLightEnv(NEnvironmentNode const& node, NLightEnvNode const& lightEnv) override {
    EXPECT_TRUE(node.GetLightEnvs().back() == LightEnvRef(lightEnv));
    Hear("add", node);
  }
  void OnRemoveLightEnv(NEnvironmentNode const& node, NLightEnvNode const& lightEnv) override {
    EXPECT_THAT(node.GetLightEnvs(), testing::Not(testing::Contains(LightEnvRef(lightEnv))));
    Hear("remove", node);
  }
  void OnImageChange(material::NMaterialNode const&) override { FAIL(); }
  void OnImageTypeChange(material::NMaterialNode const&) override { FAIL(); }
  void OnImageChange(NEnvironmentNode const& node) override { Hear("map image", node); }
  void OnImageTypeChange(NEnvironmentNode const& node) override { Hear("map type", node); }

  void Hear(char const* what, NEnvironmentNode const& node) {
    heard.push_back(what);
    auto const reaction = react;  // which may take itself away
    if (reaction) reaction(node);
  }
};

class Environment : public testing::Test, protected support::World {
 protected:
  Pointer<NEnvironmentNode> node = environments->CreateNode(NNodeID());
  Pointer<Recorder> recorder{new Recorder};

  void SetUp() override {
    events->GetEnvironmentEventMultiplexer().AddObserver(*recorder);
    events->GetEnvironmentMapChangeEventMultiplexer().AddObserver(*recorder);
  }
  Pointer<NLightEnvNode> MakeLightEnv() { return lightEnvs->CreateNode(NNodeID()); }
};

TEST_F(Environment, ListsLightEnvironmentsOnceInOrderOfAdding) {
  auto const a = MakeLightEnv();
  auto const b = MakeLightEnv();
  EXPECT_TRUE(node->AddLightEnv(*b));
  EXPECT_TRUE(node->AddLightEnv(*a));
  EXPECT_FALSE(node->AddLightEnv(*b));
  EXPECT_FALSE(node->AddLightEnv(LightEnvRef()));
  EXPECT_THAT(node->GetLightEnvs(), ElementsAre(LightEnvRef(*b), LightEnvRef(*a)));
  EXPECT_THAT(recorder->Take(), ElementsAre("add", "add"));

  EXPECT_TRUE(node->RemoveLightEnv(node->GetLightEnvs()[0]));
  EXPECT_FALSE(node->RemoveLightEnv(*b));
  EXPECT_THAT(node->GetLightEnvs(), ElementsAre(LightEnvRef(*a)));
  EXPECT_THAT(recorder->Take(), ElementsAre("remove"));
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
  recorder->react = [&](NEnvironmentNode const&) {
    recorder->react = nullptr;
    EXPECT_TRUE(node->RemoveLightEnv(*lightEnv));
  };
  EXPECT_TRUE(node->AddLightEnv(*lightEnv));
  EXPECT_THAT(node->GetLightEnvs(), IsEmpty());
  EXPECT_THAT(recorder->Take(), ElementsAre("add", "remove"));

  Pointer<environment_map::NEnvironmentMap> const map(&node->GetEnvironmentMap());
  node->SetEnvironmentMapRotationX(30.0);
  recorder->react = [&](NEnvironmentNode const& dropped) {
    environments->RemoveNode(*node);
    node.reset();
    EXPECT_EQ(dropped.GetLightEnvs().size(), 1u);
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
  map.SetImage(*images->CreateNode(NNodeID()));
  EXPECT_THAT(recorder->Take(), ElementsAre("map type", "map image"));
}

TEST_F(Environment, TellsOfTheFloorAndOfNothingElse) {
  auto const image = images->CreateNode(NNodeID());
  auto const geometry = geometries->CreateNode(NNodeID());
  node->SetFloorImage(*image);
  node->SetFloorImage(node->GetFloorImageRef());
  node->SetFloorGeometry(*geometry);
  node->SetFloorGeometry(node->GetFloorGeometryRef());
  EXPECT_EQ(node->GetFloorImage(), image);
  EXPECT_EQ(node->GetFloorGeometry(), geometry);
  EXPECT_THAT(recorder->Take(),
              ElementsAre("floor image", "floor image", "floor geometry", "floor geometry"));

  node->Set2DImage(*image);
  node->SetEnvironmentMapModel({});
  LightPath const path(*items->CreateNode<NSceneGraphLightNode>(NNodeID()), {});
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
  auto const image = images->CreateNode(NNodeID());
  auto const floor = images->CreateNode(NNodeID());
  auto const geometry = geometries->CreateNode(NNodeID());
  auto const lightEnv = MakeLightEnv();
  auto const light = items->CreateNode<NSceneGraphLightNode>(NNodeID());
  auto const tree = trees->CreateNode(NNodeID());
  node->SetName(L"studio");
  node->SetHdrBloom(7.0);
  node->SetSceneGraph(*tree);
  node->AddLight(LightPath(*light, *tree));
  node->AddLightEnv(*lightEnv);
  node->Set2DImage(*image);
  node->GetEnvironmentMap().SetImage(*image);
  node->GetEnvironmentMap().SetImageType(environment_map::NEMIT_RECTANGULAR);
  node->SetFloorImage(*floor);
  node->SetFloorGeometry(*geometry);
  auto const target = environments->CreateNode(NNodeID());
  target->AddLight(LightPath(*light, {}));
  target->AddLightEnv(*MakeLightEnv());
  recorder->Take();

  // What a listener does to the source comes too late.
  recorder->react = [&](NEnvironmentNode const& told) {
    EXPECT_EQ(&told, target.get());
    EXPECT_EQ(target->GetFloorImage(), nullptr);
    recorder->react = nullptr;
    node->SetFloorImage({});
    recorder->Take();
  };
  node->CopyTo(*target);
  EXPECT_THAT(recorder->Take(), ElementsAre("map image"));
  EXPECT_EQ(target->GetName(), L"studio (2)");
  EXPECT_EQ(target->GetHdrBloom(), 7.0);
  EXPECT_EQ(target->GetSceneGraph(), tree);
  EXPECT_THAT(target->GetLights(), ElementsAre(LightPath(*light, *tree)));
  EXPECT_THAT(target->GetLightEnvs(), ElementsAre(LightEnvRef(*lightEnv)));
  EXPECT_EQ(target->Get2DImage(), image);
  EXPECT_EQ(target->GetEnvironmentMap().GetImage(), image);
  EXPECT_EQ(target->GetEnvironmentMap().GetImageType(), environment_map::NEMIT_RECTANGULAR);
  EXPECT_EQ(target->GetFloorImage(), floor);
  EXPECT_EQ(target->GetFloorGeometry(), geometry);

  target->CopyTo(*target);
  EXPECT_THAT(recorder->Take(), ElementsAre("map type", "map image"));
  EXPECT_EQ(target->GetName(), L"studio (2)");
  EXPECT_EQ(target->GetLights().size(), 1u);
  EXPECT_EQ(target->GetLightEnvs().size(), 1u);
  EXPECT_EQ(target->GetFloorImage(), floor);
}

TEST(EnvironmentDomain, AttachesTheMultiplexersThatItHas) {
  Pointer<events::environment_map_change::NMultiplexer> const maps(
      new events::environment_map_change::NMultiplexer);
  Pointer<events::environment::NMultiplexer> const environments(
      new events::environment::NMultiplexer);
  for (int which = 0; which != 4; ++which) {
    Pointer<NEnvironmentDomain> const domain(
        new NEnvironmentDomain(nullptr, nullptr, which & 1 ? maps.get() : nullptr,
                               which & 2 ? environments.get() : nullptr));
    auto const node = domain->CreateNode(NNodeID());
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->AddObserver(*maps), (which & 1) == 0);
    EXPECT_EQ(node->AddObserver(*environments), (which & 2) == 0);
  }
}

}  // namespace
}  // namespace corvanta::data::domain::environment
