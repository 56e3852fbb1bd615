#include "tests/support/test.h"

namespace corvanta::data::domain::light_env {
namespace {

using events::light_env::NLampEventType;

/// Writes down what it hears, with the lamp's name at that moment; `react` runs after that.
class Recorder final : public events::light_env::NListener {
 public:
  std::vector<std::wstring> heard;
  std::function<void(NLightEnvNode const&, NLamp const&, NLampEventType)> react;

 private:
  void OnLampChange(NLightEnvNode const& lightEnv, NLamp const& lamp,
                    NLampEventType type) override {
    static constexpr wchar_t const* kTexts[] = {L"created ", L"deleted ", L"renamed ", L"changed "};
    heard.push_back(kTexts[type] + lamp.GetName());
    if (react) react(lightEnv, lamp, type);
  }
};

class LightEnv : public testing::Test {
 protected:
  Pointer<events::light_env::NMultiplexer> multiplexer{new events::light_env::NMultiplexer};
  Pointer<NLightEnvDomain> domain{new NLightEnvDomain(nullptr, nullptr, multiplexer.get())};
  Pointer<NLightEnvNode> node = domain->CreateNode(NNodeID());
  Pointer<Recorder> recorder{new Recorder};

  void SetUp() override { multiplexer->AddObserver(*recorder); }
  std::vector<std::wstring> Heard() { return std::exchange(recorder->heard, {}); }
};

std::vector<std::wstring> Names(NLightEnvNode const& node) {
  std::vector<std::wstring> names;
  for (auto const& lamp : node.GetLamps()) names.push_back(lamp->GetName());
  return names;
}

Vec3 Shines(Matrix const& transform) {
  Vec3 direction;
  transform.MultDirMatrix(Vec3(0.0f, 0.0f, -1.0f), direction);
  return direction;
}

void ExpectVec3(Vec3 const& v, float x, float y, float z) {
  EXPECT_NEAR(v.x, x, 1e-6f);
  EXPECT_NEAR(v.y, y, 1e-6f);
  EXPECT_NEAR(v.z, z, 1e-6f);
}

TEST_F(LightEnv, TellsOfALampFromItsNamingToItsEnd) {
  auto const lamp = node->CreateLamp(L"key");
  EXPECT_THAT(Heard(), ElementsAre(L"renamed key", L"created key"));
  EXPECT_EQ(lamp->GetOwner(), node.get());
  lamp->SetColorR(0.5);
  lamp->SetName(L"fill");
  EXPECT_THAT(Heard(), ElementsAre(L"changed key", L"renamed fill"));

  recorder->react = [&](NLightEnvNode const& owner, NLamp const& dying, NLampEventType) {
    EXPECT_EQ(dying.GetOwner(), &owner);
    EXPECT_THAT(Names(owner), ElementsAre(L"fill"));
  };
  EXPECT_TRUE(node->DeleteLamp(lamp));
  EXPECT_THAT(Heard(), ElementsAre(L"deleted fill"));
  recorder->react = nullptr;
  EXPECT_EQ(lamp->GetOwner(), nullptr);
  EXPECT_EQ(lamp->GetNamespace(), nullptr);
  EXPECT_TRUE(node->GetLamps().empty());

  EXPECT_FALSE(node->DeleteLamp(lamp));
  EXPECT_FALSE(node->DeleteLamp(nullptr));
  EXPECT_FALSE(node->DeleteLamp(domain->CreateNode(NNodeID())->CreateLamp(L"")));
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

  auto const other = domain->CreateNode(NNodeID());
  EXPECT_EQ(other->CreateLamp(L"a (2)")->GetName(), L"a (2)");
  EXPECT_THAT(Heard(), testing::Contains(L"renamed  (2)"));
}

TEST_F(LightEnv, DeletionSurvivesItsListeners) {
  node->CreateLamp(L"a");
  node->CreateLamp(L"b");
  node->CreateLamp(L"c");
  recorder->react = [](NLightEnvNode const&, NLamp const&, NLampEventType) {
    throw std::runtime_error("listener");
  };
  EXPECT_THROW(node->DeleteLamp(node->GetLamps()[0]), std::runtime_error);
  EXPECT_THAT(Names(*node), ElementsAre(L"b", L"c"));

  bool isNested = false;
  recorder->react = [&](NLightEnvNode const&, NLamp const&, NLampEventType) {
    if (!std::exchange(isNested, true)) {
      EXPECT_TRUE(node->DeleteLamp(node->GetLamps()[0]));
    }
  };
  EXPECT_TRUE(node->DeleteLamp(node->GetLamps()[0]));
  EXPECT_THAT(Names(*node), ElementsAre(L"c"));

  // A listener drops the node itself.
  recorder->react = [&](NLightEnvNode const&, NLamp const&, NLampEventType) {
    domain->RemoveNode(*node);
    node.reset();
  };
  auto* const unheld = node.get();
  EXPECT_TRUE(unheld->DeleteLamp(unheld->GetLamps()[0]));
  EXPECT_EQ(node, nullptr);
}

TEST_F(LightEnv, CreationSurvivesItsListeners) {
  recorder->react = [&](NLightEnvNode const&, NLamp const&, NLampEventType type) {
    if (type == events::light_env::NLET_LAMP_RENAMED) node->DeleteLamp(node->GetLamps().back());
  };
  EXPECT_EQ(node->CreateLamp(L"a")->GetOwner(), nullptr);
  EXPECT_THAT(Heard(), ElementsAre(L"renamed a", L"deleted a"));
  EXPECT_TRUE(node->GetLamps().empty());

  recorder->react = [](NLightEnvNode const&, NLamp const&, NLampEventType) {
    throw std::runtime_error("listener");
  };
  EXPECT_THROW(node->CreateLamp(L"a"), std::runtime_error);
  EXPECT_THAT(Names(*node), ElementsAre(L"a"));

  // It stays also if the listener names it first, the empty name among others.
  for (std::wstring const name : {L"", L"a", L"b"}) {
    bool isNested = false;
    recorder->react = [&](NLightEnvNode const&, NLamp const&, NLampEventType) {
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
  domain->RemoveNode(*node);
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
  ExpectVec3(Shines(lamp->GetTransform()), third, -third, -third);
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
  Matrix const turned = lamp->GetTransform();
  ExpectVec3(Shines(turned), -2.0f, 0.0f, 0.0f);
  ExpectVec3(Vec3(turned(3, 0), turned(3, 1), turned(3, 2)), 0.0f, 0.0f, -2.0f);
}

TEST_F(LightEnv, ACopyAddsToWhatTheTargetHas) {
  node->SetName(L"rig");
  node->SetLampsScale(4.0);
  node->CreateLamp(L"a")->SetType(LAMP_TYPE_SPOT);
  node->CreateLamp(L"b")->SetEnabled(false);
  auto const target = domain->CreateNode(NNodeID());
  target->CreateLamp(L"own");
  node->CopyTo(*target);
  EXPECT_EQ(target->GetName(), L"rig (2)");
  EXPECT_EQ(target->GetLampsScale(), 4.0);
  EXPECT_THAT(Names(*target), ElementsAre(L"own", L"a", L"b"));
  EXPECT_EQ(target->GetLamps()[1]->GetType(), LAMP_TYPE_SPOT);
  EXPECT_FALSE(target->GetLamps()[2]->IsEnabled());
  EXPECT_THAT(Names(*node), ElementsAre(L"a", L"b"));
  node->CopyTo(*target);
  EXPECT_EQ(target->GetName(), L"rig (2)");
  EXPECT_THAT(Names(*target), ElementsAre(L"own", L"a", L"b", L"a (2)", L"b (2)"));

  node->CopyTo(*node);
  EXPECT_EQ(node->GetName(), L"rig");
  ASSERT_EQ(node->GetLamps().size(), 4u);
  EXPECT_EQ(node->GetLamps()[2]->GetType(), LAMP_TYPE_SPOT);
  EXPECT_FALSE(node->GetLamps()[3]->IsEnabled());
}

TEST(LightEnvDomain, WorksWithoutItsMultiplexer) {
  Pointer<NLightEnvDomain> const domain(new NLightEnvDomain(nullptr, nullptr, nullptr));
  auto const node = domain->CreateNode(NNodeID());
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->CreateLamp(L"a")->GetName(), L"a");
}

}  // namespace
}  // namespace corvanta::data::domain::light_env
