#include "tests/out_of_memory/failing_allocations.h"

namespace corvanta::out_of_memory {
namespace {

using data::domain::environment::NEnvironmentDomain;
using data::domain::light_env::NLightEnvDomain;
using data::domain::light_env::NLightEnvNode;
using data::domain::scenegraph::item::NSceneGraphItemDomain;
using data::domain::scenegraph::item::NSceneGraphLightNode;

using LightPath = data::domain::scenegraph::NSceneGraphPath<NSceneGraphLightNode>;

std::vector<std::wstring> Lamps(NLightEnvNode const& node) {
  std::vector<std::wstring> names;
  for (auto const& lamp : node.GetLamps()) {
    EXPECT_EQ(node.QueryNamedObject(lamp->GetName()), lamp.get());
    names.push_back(lamp->GetName());
  }
  EXPECT_EQ(names.size(), node.GetNamedObjectCount());
  return names;
}

TEST(LightEnv, CreateLampLeavesNothingBehind) {
  Pointer<NLightEnvDomain> const domain(new NLightEnvDomain(nullptr, nullptr, nullptr));
  auto const node = domain->CreateNode(NNodeID());
  for (int i = 0; i != 20; ++i) {
    // Free, taken, and empty names: the provisional name is another each time.
    std::wstring const name =
        i % 2 ? L"" : L"a name too long to stand in the text itself " + std::to_wstring(i / 4);
    auto const before = Lamps(*node);
    int const failures = FailEverywhere([&] { ASSERT_TRUE(node->CreateLamp(name)); },
                                        [&] { ASSERT_EQ(Lamps(*node), before); });
    EXPECT_GT(failures, 3);
    ASSERT_EQ(Lamps(*node).size(), before.size() + 1);
  }
}

TEST(Environment, WhatIsAddedIsInOrNot) {
  Pointer<NEnvironmentDomain> const domain(
      new NEnvironmentDomain(nullptr, nullptr, nullptr, nullptr));
  Pointer<NLightEnvDomain> const lightEnvs(new NLightEnvDomain(nullptr, nullptr, nullptr));
  Pointer<NSceneGraphItemDomain> const items(
      new NSceneGraphItemDomain(nullptr, nullptr, nullptr, nullptr, nullptr));
  int const failures = FailEverywhere([&] { ASSERT_TRUE(domain->CreateNode(NNodeID())); },
                                      [&] { ASSERT_EQ(domain->GetNodeCount(), 0u); });
  EXPECT_GT(failures, 5);
  auto const node = domain->CreateNode(NNodeID());
  for (std::size_t i = 0; i != 5; ++i) {
    auto const lightEnv = lightEnvs->CreateNode(NNodeID());
    FailEverywhere([&] { ASSERT_TRUE(node->AddLightEnv(*lightEnv)); },
                   [&] { ASSERT_EQ(node->GetLightEnvs().size(), i); });
    LightPath const path(*items->CreateNode<NSceneGraphLightNode>(NNodeID()), {});
    FailEverywhere([&] { ASSERT_TRUE(node->AddLight(path)); },
                   [&] { ASSERT_EQ(node->GetLights().size(), i); });
  }
}

TEST(ViewManager, AddViewDestroysNobody) {
  Pointer<data::view::NViewManager> const manager(new data::view::NViewManager(nullptr));
  auto* const unheld = new data::view::NView;
  FailEverywhere([&] { ASSERT_TRUE(manager->AddView(*unheld, 0)); },
                 [&] {
                   ASSERT_TRUE(manager->GetViews().empty());
                   ASSERT_EQ(unheld->GetRight(), 1.0);
                 });
  EXPECT_EQ(manager->GetViews().front().get(), unheld);
}

}  // namespace
}  // namespace corvanta::out_of_memory
