#include "tests/support/world.h"

namespace corvanta::data::operators {
namespace {

using domain::environment::NEnvironmentNode;
using domain::light::NLightNode;
using domain::light_env::NLamp;
using domain::light_env::NLightEnvNode;
using domain::scenegraph::item::NSceneGraphLightNode;
using domain::scenegraph::item::NSceneGraphReferenceNode;
using LightPath = domain::scenegraph::NSceneGraphPath<NSceneGraphLightNode>;

class ConvertToLightEnvTest : public testing::Test, protected support::World {
 protected:
  Pointer<NEnvironmentNode> environment = environments->CreateNode(NNodeID());

  /// A light item named `name` at the root of a tree of its own, listed by the environment.
  Pointer<NSceneGraphLightNode> AddLight(wchar_t const* name) {
    auto const item = items->CreateNode<NSceneGraphLightNode>(NNodeID());
    item->SetName(name);
    item->SetLightNode(*lights->CreateNode(NNodeID()));
    auto const tree = trees->CreateNode(NNodeID());
    tree->SetRoot(*item);
    environment->AddLight(LightPath(*item, *tree));
    return item;
  }
  Pointer<NLightEnvNode> Converted() {
    return environment->GetLightEnvs().empty() ? nullptr : environment->GetLightEnvs()[0].Get();
  }
};

TEST_F(ConvertToLightEnvTest, CopiesTheLightToWhereItsItemStands) {
  environment->SetName(L"a %1% b %2% 100%");
  auto const item = AddLight(L"key");
  item->SetTranslationX(1.0);
  item->SetTranslationY(2.0);
  item->SetTranslationZ(3.0);
  item->SetScaleZ(5.0);
  auto const light = item->GetLightNode();
  light->SetType(domain::light::LT_SPOT);
  light->SetColorR(0.25);
  light->SetColorG(0.5);
  light->SetColorB(0.75);
  light->SetExtension(domain::light::NET_EMIT_MINUS);
  light->SetMakesShadow(false);
  light->SetMakesSelfShadow(false);
  light->SetShadowDarkness(2.0);
  light->SetShadowSoftness(3.0);
  light->SetAttenuationType(static_cast<domain::light::NAttenuationType>(4));
  light->SetAttenuationRange(5.0);
  light->QueryAttribute(L"spreadAngle")->SetValue(6.0, true);
  light->QueryAttribute(L"falloffAngle")->SetValue(7.0, true);

  EXPECT_TRUE(ConvertToLightEnv(*environment, *lightEnvs));
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
  EXPECT_EQ(lamp.GetType(), domain::light_env::LAMP_TYPE_SPOT);
  EXPECT_EQ(lamp.GetAttenuationType(), 4);
  EXPECT_TRUE(lamp.IsEmitMinus());
  EXPECT_FALSE(lamp.IsMakesShadow());
  EXPECT_FALSE(lamp.IsMakesSelfShadow());
  EXPECT_TRUE(lamp.IsEnabled());
}

TEST_F(ConvertToLightEnvTest, ConvertsOnceAndKnowsWhatItMade) {
  EXPECT_FALSE(ConvertToLightEnv(*environment, *lightEnvs));
  EXPECT_EQ(lightEnvs->GetNodeCount(), 0u);
  AddLight(L"a")->GetLightNode()->SetExtension(domain::light::NET_DEFAULT);
  EXPECT_TRUE(ConvertToLightEnv(*environment, *lightEnvs));
  EXPECT_FALSE(Converted()->GetLamps()[0]->IsEmitMinus());
  EXPECT_FALSE(ConvertToLightEnv(*environment, *lightEnvs));
  environment->RemoveLightEnv(environment->GetLightEnvs()[0]);
  AddLight(L"b");
  EXPECT_TRUE(ConvertToLightEnv(*environment, *lightEnvs));
  EXPECT_THAT(environment->GetLightEnvs(), IsEmpty());
  EXPECT_EQ(lightEnvs->GetNodeCount(), 1u);
}

TEST_F(ConvertToLightEnvTest, PassesOverWhatHasNoLight) {
  AddLight(L"dark")->SetLightNode({});
  AddLight(L"lit");
  auto const gone = AddLight(L"gone");
  items->RemoveNode(*gone);
  environment->AddLight(LightPath());
  EXPECT_TRUE(ConvertToLightEnv(*environment, *lightEnvs));
  ASSERT_EQ(Converted()->GetLamps().size(), gone ? 2u : 1u);
}

TEST_F(ConvertToLightEnvTest, GivesNamesToOneItemShownTwice) {
  auto const item = items->CreateNode<NSceneGraphLightNode>(NNodeID());
  item->SetName(L"key");
  item->SetLightNode(*lights->CreateNode(NNodeID()));
  auto const inner = trees->CreateNode(NNodeID());
  inner->SetRoot(*item);
  for (double x : {1.0, 2.0}) {
    auto const reference = items->CreateNode<NSceneGraphReferenceNode>(NNodeID());
    reference->SetSceneGraph(*inner);
    reference->SetTranslationX(x);
    auto const outer = trees->CreateNode(NNodeID());
    outer->SetRoot(*reference);
    environment->AddLight(LightPath(*item, *outer, {*reference}));
  }
  EXPECT_TRUE(ConvertToLightEnv(*environment, *lightEnvs));
  auto const& lamps = Converted()->GetLamps();
  ASSERT_EQ(lamps.size(), 2u);
  EXPECT_EQ(lamps[0]->GetName(), L"key");
  EXPECT_EQ(lamps[1]->GetName(), L"key (2)");
  EXPECT_EQ(lamps[0]->GetPositionX() + lamps[1]->GetPositionX(), 3.0);
}

TEST_F(ConvertToLightEnvTest, ABrokenPathLeavesTheNodeUnlisted) {
  AddLight(L"a");
  auto const item = items->CreateNode<NSceneGraphLightNode>(NNodeID());
  item->SetLightNode(*lights->CreateNode(NNodeID()));
  environment->AddLight(LightPath(*item, {}));
  EXPECT_THROW(ConvertToLightEnv(*environment, *lightEnvs),
               domain::scenegraph::NSceneGraphPathError);
  EXPECT_THAT(environment->GetLightEnvs(), IsEmpty());
  EXPECT_NE(lightEnvs->QueryNode(environment->GetID()), nullptr);
}

}  // namespace
}  // namespace corvanta::data::operators
