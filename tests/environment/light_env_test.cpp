#include "tests/support/world.h"

namespace corvanta::data::domain::light_env {
namespace {

using LightPath = NSceneGraphPath<NSceneGraphLightNode>;

class LightEnv : public testing::Test, protected support::World {
 protected:
  Pointer<NLightEnvNode> node = lightEnvs->CreateNode();
  Pointer<support::EventLog> recorder = Listen();
  std::vector<std::wstring> heard;  // with the lamp's name at that moment
  std::function<void(NSignal const&)> react;

  void SetUp() override {
    recorder->react = [this](NSignal const& signal) {
      heard.push_back(core::text::ToWide(signal.name + std::string(" ")) + signal.other->GetName());
      if (auto const call = react) call(signal);
    };
  }
  std::vector<std::wstring> Heard() { return std::exchange(heard, {}); }
};

std::vector<std::wstring> Names(NLightEnvNode const& node) {
  std::vector<std::wstring> names;
  for (auto const& lamp : node.GetLamps()) names.push_back(lamp->GetName());
  return names;
}

Vec3 Shines(Matrix const& transform) {
  Vec3 direction;
  transform.MultDirMatrix(Vec3(0, 0, -1), direction);
  return direction;
}

TEST_F(LightEnv, TellsOfALampFromItsNamingToItsEnd) {
  auto const lamp = node->CreateLamp(L"key");
  EXPECT_THAT(Heard(), ElementsAre(L"lampRenamed key", L"lampCreated key"));
  EXPECT_EQ(lamp->GetOwner(), node.get());
  lamp->SetColorR(0.5);
  lamp->SetName(L"fill");
  EXPECT_THAT(Heard(), ElementsAre(L"lampChanged key", L"lampRenamed fill"));

  react = [&](NSignal const& signal) {
    EXPECT_EQ(lamp->GetOwner(), signal.node);
    EXPECT_THAT(Names(*node), ElementsAre(L"fill"));
  };
  EXPECT_TRUE(node->DeleteLamp(lamp));
  EXPECT_THAT(Heard(), ElementsAre(L"lampDeleted fill"));
  react = nullptr;
  EXPECT_EQ(lamp->GetOwner(), nullptr);
  EXPECT_EQ(lamp->GetNamespace(), nullptr);
  EXPECT_TRUE(node->GetLamps().empty());

  EXPECT_FALSE(node->DeleteLamp(lamp));
  EXPECT_FALSE(node->DeleteLamp(nullptr));
  EXPECT_FALSE(node->DeleteLamp(lightEnvs->CreateNode()->CreateLamp(L"")));
  Heard();
  lamp->SetColorR(0.25);
  lamp->SetName(L"gone");
  EXPECT_EQ(lamp->GetColorR(), 0.25);
  EXPECT_TRUE(Heard().empty());
}

TEST_F(LightEnv, LampsShareNoNameWithinOneNode) {
  node->CreateLamp(L"");
  node->CreateLamp(L"");
  node->CreateLamp(L"a");
  node->CreateLamp(L"a");
  EXPECT_THAT(Names(*node), ElementsAre(L"", L" (2)", L"a", L"a (2)"));
  node->GetLamps()[2]->SetName(L"a (2)");
  node->GetLamps()[3]->SetName(L"a (2)");
  EXPECT_THAT(Names(*node), ElementsAre(L"", L" (2)", L"a (2) (2)", L"a (2)"));

  auto const other = lightEnvs->CreateNode();
  EXPECT_EQ(other->CreateLamp(L"a (2)")->GetName(), L"a (2)");
  EXPECT_THAT(Heard(), testing::Contains(L"lampRenamed  (2)"));
}

TEST_F(LightEnv, DeletionSurvivesItsListeners) {
  node->CreateLamp(L"a");
  node->CreateLamp(L"b");
  node->CreateLamp(L"c");
  react = [](NSignal const&) { throw std::runtime_error("listener"); };
  EXPECT_THROW(node->DeleteLamp(node->GetLamps()[0]), std::runtime_error);
  EXPECT_THAT(Names(*node), ElementsAre(L"b", L"c"));

  bool isNested = false;
  react = [&](NSignal const&) {
    if (!std::exchange(isNested, true)) {
      EXPECT_TRUE(node->DeleteLamp(node->GetLamps()[0]));
    }
  };
  EXPECT_TRUE(node->DeleteLamp(node->GetLamps()[0]));
  EXPECT_THAT(Names(*node), ElementsAre(L"c"));

  // A listener drops the node itself.
  react = [&](NSignal const&) {
    lightEnvs->RemoveNode(*node);
    node.reset();
  };
  auto* const unheld = node.get();
  EXPECT_TRUE(unheld->DeleteLamp(unheld->GetLamps()[0]));
  EXPECT_EQ(node, nullptr);
}

TEST_F(LightEnv, CreationSurvivesItsListeners) {
  react = [&](NSignal const& signal) {
    if (signal.name == std::string("lampRenamed")) node->DeleteLamp(node->GetLamps().back());
  };
  EXPECT_EQ(node->CreateLamp(L"a")->GetOwner(), nullptr);
  EXPECT_THAT(Heard(), ElementsAre(L"lampRenamed a", L"lampDeleted a"));
  EXPECT_TRUE(node->GetLamps().empty());

  react = [](NSignal const&) { throw std::runtime_error("listener"); };
  EXPECT_THROW(node->CreateLamp(L"a"), std::runtime_error);
  EXPECT_THAT(Names(*node), ElementsAre(L"a"));

  // It stays also if the listener names it first, the empty name among others.
  for (std::wstring const name : {L"", L"a", L"b"}) {
    bool isNested = false;
    react = [&](NSignal const&) {
      if (std::exchange(isNested, true)) return;
      node->GetLamps().back()->SetName(name);
      throw std::runtime_error("listener");
    };
    EXPECT_THROW(node->CreateLamp(L"c"), std::runtime_error);
  }
  EXPECT_THAT(Names(*node), ElementsAre(L"a", L"", L"a (2)", L"b"));
}

TEST_F(LightEnv, ALampOutlivesItsOwner) {
  auto const lamp = node->CreateLamp(L"a");
  node->SetLampsScale(3.0);
  lightEnvs->RemoveNode(*node);
  node.reset();
  Heard();
  EXPECT_EQ(lamp->GetOwner(), nullptr);
  lamp->SetName(L"b");
  lamp->SetPositionX(7.0);
  EXPECT_EQ(lamp->GetName(), L"b");
  EXPECT_EQ(lamp->GetTransform()(3, 0), 7.0f);
  EXPECT_TRUE(Heard().empty());
}

TEST_F(LightEnv, LampsStandInTheFrameOfTheirNode) {
  auto const lamp = node->CreateLamp(L"a");
  float const third = 1.0f / std::sqrt(3.0f);
  EXPECT_TRUE(Near(Shines(lamp->GetTransform()), {third, -third, -third}, 1e-6f));
  EXPECT_EQ(lamp->GetTransform()(3, 1), 1.0f);

  lamp->SetDirectionX(0.0);
  lamp->SetDirectionY(0.0);
  for (auto set : {&NLamp::SetPositionX, &NLamp::SetPositionY, &NLamp::SetPositionZ}) {
    (*lamp.*set)(0.0);
  }
  EXPECT_EQ(lamp->GetTransform(), Matrix());

  lamp->SetPositionX(1.0);
  node->SetLampsRotationY(90.0);
  node->SetLampsScale(2.0);
  node->SetLampsCoefficient(17.0);
  EXPECT_TRUE(Near(Shines(lamp->GetTransform()), {-2, 0, 0}, 1e-6f));
  EXPECT_TRUE(Near(Apply(lamp->GetTransform(), Vec3()), {0, 0, -2}, 1e-6f));
}

TEST_F(LightEnv, ACopyAddsToWhatTheTargetHas) {
  node->CreateLamp(L"a")->SetType(LAMP_TYPE_SPOT);
  node->CreateLamp(L"b")->SetEnabled(false);
  auto const target = lightEnvs->CreateNode();
  target->CreateLamp(L"own");
  node->CopyTo(*target);
  EXPECT_THAT(Names(*target), ElementsAre(L"own", L"a", L"b"));
  EXPECT_EQ(target->GetLamps()[1]->GetType(), LAMP_TYPE_SPOT);
  EXPECT_FALSE(target->GetLamps()[2]->IsEnabled());
  EXPECT_THAT(Names(*node), ElementsAre(L"a", L"b"));
  node->CopyTo(*target);
  EXPECT_THAT(Names(*target), ElementsAre(L"own", L"a", L"b", L"a (2)", L"b (2)"));

  node->CopyTo(*node);
  ASSERT_EQ(node->GetLamps().size(), 4u);
  EXPECT_EQ(node->GetLamps()[2]->GetType(), LAMP_TYPE_SPOT);
  EXPECT_FALSE(node->GetLamps()[3]->IsEnabled());
}

TEST(LightEnvDomain, WorksWithoutItsMultiplexer) {
  auto const domain = New<NLightEnvDomain>(nullptr, nullptr, nullptr);
  auto const node = domain->CreateNode();
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->CreateLamp(L"a")->GetName(), L"a");
}

class ConvertToLightEnvTest : public testing::Test, protected support::World {
 protected:
  Pointer<NEnvironmentNode> environment = environments->CreateNode();

  /// A light item named `name` at the root of a tree of its own, listed by the environment.
  Pointer<NSceneGraphLightNode> AddLight(wchar_t const* name) {
    auto const item = MakeLight(name);
    environment->AddLight(LightPath(*item, *MakeTree(item)));
    return item;
  }
  Pointer<NSceneGraphLightNode> MakeLight(wchar_t const* name) {
    auto const item = Make<NSceneGraphLightNode>();
    item->SetName(name);
    item->SetLightNode(*lights->CreateNode());
    return item;
  }
  Pointer<NLightEnvNode> Converted() {
    return environment->GetLightEnvs().empty() ? nullptr : environment->GetLightEnvs()[0].Get();
  }
};

TEST_F(ConvertToLightEnvTest, CopiesTheLightToWhereItsItemStands) {
  environment->SetName(L"a %1% b %2% 100%");
  auto const item = AddLight(L"key");
  support::Move(*item, 1, 2, 3);
  item->SetScaleZ(5.0);
  auto const light = item->GetLightNode();
  light->SetType(light::LT_SPOT);
  light->SetColorR(0.25);
  light->SetColorG(0.5);
  light->SetColorB(0.75);
  light->SetExtension(light::NET_EMIT_MINUS);
  light->SetMakesShadow(false);
  light->SetMakesSelfShadow(false);
  light->SetShadowDarkness(2.0);
  light->SetShadowSoftness(3.0);
  light->SetAttenuationType(static_cast<light::NAttenuationType>(4));
  light->SetAttenuationRange(5.0);
  light->QueryAttribute(L"spreadAngle")->SetValue(6.0, true);
  light->QueryAttribute(L"falloffAngle")->SetValue(7.0, true);

  EXPECT_TRUE(data::operators::ConvertToLightEnv(*environment, *lightEnvs));
  auto const node = Converted();
  ASSERT_NE(node, nullptr);
  EXPECT_TRUE(node->GetID() == environment->GetID());
  EXPECT_EQ(node->GetName(), L"converted a %1% b %2% 100%'s lights");
  EXPECT_EQ(environment->GetLights().size(), 1u);
  ASSERT_EQ(node->GetLamps().size(), 1u);
  NLamp const& lamp = *node->GetLamps()[0];
  EXPECT_EQ(lamp.GetName(), L"key");
  std::vector<double> const numbers{
      lamp.GetPositionX(),      lamp.GetPositionY(),      lamp.GetPositionZ(),
      lamp.GetDirectionX(),     lamp.GetDirectionY(),     lamp.GetDirectionZ(),
      lamp.GetColorR(),         lamp.GetColorG(),         lamp.GetColorB(),
      lamp.GetShadowDarkness(), lamp.GetShadowSoftness(), lamp.GetAttenuationRange(),
      lamp.GetSpreadAngle(),    lamp.GetFalloffAngle(),   lamp.GetShadowDepthBias()};
  EXPECT_THAT(numbers, ElementsAre(1, 2, 3, 0, 0, -1, 0.25, 0.5, 0.75, 2, 3, 5, 6, 7, 0));
  EXPECT_EQ(lamp.GetType(), LAMP_TYPE_SPOT);
  EXPECT_EQ(lamp.GetAttenuationType(), 4);
  EXPECT_TRUE(lamp.IsEmitMinus());
  EXPECT_FALSE(lamp.IsMakesShadow());
  EXPECT_FALSE(lamp.IsMakesSelfShadow());
  EXPECT_TRUE(lamp.IsEnabled());
}

TEST_F(ConvertToLightEnvTest, ConvertsOnceAndKnowsWhatItMade) {
  EXPECT_FALSE(data::operators::ConvertToLightEnv(*environment, *lightEnvs));
  EXPECT_EQ(lightEnvs->GetNodeCount(), 0u);
  AddLight(L"a")->GetLightNode()->SetExtension(light::NET_DEFAULT);
  EXPECT_TRUE(data::operators::ConvertToLightEnv(*environment, *lightEnvs));
  EXPECT_FALSE(Converted()->GetLamps()[0]->IsEmitMinus());
  EXPECT_FALSE(data::operators::ConvertToLightEnv(*environment, *lightEnvs));
  environment->RemoveLightEnv(environment->GetLightEnvs()[0]);
  AddLight(L"b");
  EXPECT_TRUE(data::operators::ConvertToLightEnv(*environment, *lightEnvs));
  EXPECT_THAT(environment->GetLightEnvs(), IsEmpty());
  EXPECT_EQ(lightEnvs->GetNodeCount(), 1u);
}

TEST_F(ConvertToLightEnvTest, PassesOverWhatHasNoLight) {
  AddLight(L"dark")->SetLightNode({});
  AddLight(L"lit");
  auto const gone = AddLight(L"gone");
  items->RemoveNode(*gone);
  environment->AddLight(LightPath());
  EXPECT_TRUE(data::operators::ConvertToLightEnv(*environment, *lightEnvs));
  ASSERT_EQ(Converted()->GetLamps().size(), gone ? 2u : 1u);
}

TEST_F(ConvertToLightEnvTest, GivesNamesToOneItemShownTwice) {
  auto const item = MakeLight(L"key");
  Tree const inner = MakeTree(item);
  for (double x : {1.0, 2.0}) {
    Reference const reference = MakeReference(inner);
    reference->SetTranslationX(x);
    environment->AddLight(LightPath(*item, *MakeTree(reference), {*reference}));
  }
  EXPECT_TRUE(data::operators::ConvertToLightEnv(*environment, *lightEnvs));
  auto const& lamps = Converted()->GetLamps();
  ASSERT_EQ(lamps.size(), 2u);
  EXPECT_EQ(lamps[0]->GetName(), L"key");
  EXPECT_EQ(lamps[1]->GetName(), L"key (2)");
  EXPECT_EQ(lamps[0]->GetPositionX() + lamps[1]->GetPositionX(), 3.0);
}

TEST_F(ConvertToLightEnvTest, ABrokenPathLeavesTheNodeUnlisted) {
  AddLight(L"a");
  environment->AddLight(LightPath(*MakeLight(L"b"), {}));
  EXPECT_THROW(data::operators::ConvertToLightEnv(*environment, *lightEnvs),
               scenegraph::NSceneGraphPathError);
  EXPECT_THAT(environment->GetLightEnvs(), IsEmpty());
  EXPECT_NE(lightEnvs->QueryNode(environment->GetID()), nullptr);
}

}  // namespace
}  // namespace corvanta::data::domain::light_env
