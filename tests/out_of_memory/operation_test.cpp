#include "tests/out_of_memory/failing_allocations.h"
#include "tests/out_of_memory/world.h"

namespace corvanta::out_of_memory {
namespace {

struct Host final : NAttributeHost {};

using Contents = std::vector<std::pair<std::wstring, std::wstring>>;

/// What can be seen of a domain from outside.
Contents GetContents(NLightDomain const& domain) {
  Contents contents;
  for (NLightNode const& light : domain) {
    contents.emplace_back(light.GetID().ToString(), light.GetName());
    EXPECT_EQ(domain.QueryNode(light.GetID()), &light);
    EXPECT_EQ(domain.QueryNamedObject(light.GetName()), &light);
  }
  EXPECT_EQ(contents.size(), domain.GetNodeCount());
  EXPECT_EQ(contents.size(), domain.GetNamedObjectCount());
  return contents;
}

class Domain : public testing::Test {
 protected:
  Pointer<NLightDomain> const domain = New<NLightDomain>(nullptr, nullptr);

  void SetUp() override { domain->CreateNode(); }
};

TEST_F(Domain, CreateNodeLeavesNothingBehind) {
  // Often, so that the tables grow while they fail.
  for (int i = 0; i != 30; ++i) {
    auto const before = GetContents(*domain);
    NNodeID const id(L"an id that is no GUID, so that it is kept as a text" + std::to_wstring(i));
    int const failures = FailEverywhere([&] { ASSERT_TRUE(domain->CreateNode(id)); },
                                        [&] { ASSERT_EQ(GetContents(*domain), before); });
    EXPECT_GT(failures, 5);
    ASSERT_EQ(GetContents(*domain).size(), before.size() + 1);
  }
}

TEST_F(Domain, AddNodeLeavesTheNodeAsItWas) {
  for (int i = 0; i != 30; ++i) {
    auto const light = New<NLightNode>(NNodeID(), nullptr, nullptr);
    auto const before = GetContents(*domain);
    FailEverywhere([&] { ASSERT_TRUE(domain->AddNode(*light, 0)); },
                   [&] {
                     ASSERT_EQ(GetContents(*domain), before);
                     ASSERT_EQ(light->GetName(), L"light");
                     ASSERT_EQ(light->GetDomain(), nullptr);
                     ASSERT_EQ(light->GetNamespace(), nullptr);
                   });
    ASSERT_EQ(GetContents(*domain).front().second, light->GetName());
  }
}

TEST_F(Domain, RegisterDomainKeepsTheOldOneAndDestroysNobody) {
  NDomainManager manager;
  NLocator const here(NUri::CreateInternalUri(NPath(L"/a place with a long name")));
  for (int round = 0; round != 2; ++round) {
    auto const before = manager.QueryDomain(here);
    auto* const unheld = new NLightDomain(&manager, nullptr);
    FailEverywhere([&] { manager.RegisterDomain(*unheld, here, L"a description of some length"); },
                   [&] {
                     ASSERT_EQ(manager.QueryDomain(here), before);
                     ASSERT_EQ(unheld->GetNodeCount(), 0u);
                   });
    EXPECT_EQ(manager.QueryDomain(here), unheld);
  }
}

TEST(Attributes, AddAttributeAndSetValue) {
  auto const host = New<Host>();
  for (int i = 0; i != 40; ++i) {
    std::wstring const name = L"attribute that nobody had before " + std::to_wstring(i);
    FailEverywhere([&] { ASSERT_NE(host->AddAttribute(name, true), nullptr); },
                   [&] { ASSERT_EQ(host->QueryAttribute(name), nullptr); });
  }
  auto& attribute = *host->GetAttributeBegin();
  for (NVariant const value : {L"a text that lies on the heap", L"another text, a longer one"}) {
    auto const before = attribute.GetValue();
    FailEverywhere([&] { attribute.SetValue(value, false); },
                   [&] { ASSERT_EQ(attribute.GetValue(), before); });
    EXPECT_EQ(attribute.GetValue(), value);
  }
}

TEST(Observers, AddObserverRegistersOrNot) {
  auto const events = New<NEventMultiplexer>();
  auto const light =
      New<NLightNode>(NNodeID(), nullptr, &events->GetAttributeChangeEventMultiplexer());
  std::vector<Pointer<Counter>> listeners;
  for (int i = 0; i != 40; ++i) listeners.push_back(New<Counter>());
  for (auto const& listener : listeners) {
    FailEverywhere([&] { ASSERT_TRUE(events->AddObserver(*listener)); },
                   [&] { ASSERT_FALSE(events->RemoveObserver(*listener)); });
  }
  light->SetColorR(2);
  for (auto const& listener : listeners) EXPECT_EQ(listener->counts[0], 1);
}

TEST(Observers, DeliveryAndRemovalAllocateNothing) {
  auto const events = New<NEventMultiplexer>();
  auto const light =
      New<NLightNode>(NNodeID(), nullptr, &events->GetAttributeChangeEventMultiplexer());
  std::vector<Pointer<Counter>> listeners;
  for (int i = 0; i != 100; ++i) {
    listeners.push_back(New<Counter>());
    if (i % 5 != 0) events->AddObserver(*listeners.back());
    if (i % 5 == 1) listeners.back().reset();
  }
  std::size_t const before = CountAllocations();
  light->SetColorR(2);
  for (auto const& listener : listeners) {
    if (listener) events->RemoveObserver(*listener);
  }
  light->SetColorR(3);
  EXPECT_EQ(CountAllocations(), before);
  EXPECT_EQ(listeners[2]->counts[0], 1);
}

TEST(Events, MultiplexerIsMadeWholeOrNot) {
  Pointer<NEventMultiplexer> events;
  EXPECT_GT(FailEverywhere([&] { events = New<NEventMultiplexer>(); },
                           [&] { ASSERT_EQ(events, nullptr); }),
            12);
}

std::vector<std::wstring> GetLamps(NLightEnvNode const& node) {
  std::vector<std::wstring> names;
  for (auto const& lamp : node.GetLamps()) {
    EXPECT_EQ(node.QueryNamedObject(lamp->GetName()), lamp.get());
    names.push_back(lamp->GetName());
  }
  EXPECT_EQ(names.size(), node.GetNamedObjectCount());
  return names;
}

TEST(LightEnv, CreateLampLeavesNothingBehind) {
  support::World const world;
  auto const node = world.lightEnvs->CreateNode();
  for (int i = 0; i != 20; ++i) {
    // Free, taken, and empty names: the provisional name is another each time.
    std::wstring const name =
        i % 2 ? L"" : L"a name too long to stand in the text itself " + std::to_wstring(i / 4);
    auto const before = GetLamps(*node);
    int const failures = FailEverywhere([&] { ASSERT_TRUE(node->CreateLamp(name)); },
                                        [&] { ASSERT_EQ(GetLamps(*node), before); });
    EXPECT_GT(failures, 3);
    ASSERT_EQ(GetLamps(*node).size(), before.size() + 1);
  }
}

TEST(ViewManager, AddViewDestroysNobody) {
  auto const manager = New<NViewManager>(nullptr);
  auto* const unheld = new NView;
  FailEverywhere([&] { ASSERT_TRUE(manager->AddView(*unheld, 0)); },
                 [&] {
                   ASSERT_TRUE(manager->GetViews().empty());
                   ASSERT_EQ(unheld->GetRight(), 1.0);
                 });
  EXPECT_EQ(manager->GetViews().front().get(), unheld);
}

TEST(InternalData, InitializeLeavesTheDomainsThatWereThere) {
  support::TemporaryFiles const files;
  NDomainManager manager;
  auto const events = New<NEventMultiplexer>();
  for (std::ptrdiff_t const domains : {0, 10}) {
    auto const first = manager.begin() == manager.end() ? nullptr : manager.begin()->second.domain;
    int const failures =
        FailEverywhere([&] { ASSERT_TRUE(data::internal::Initialize(manager, *events)); },
                       [&] {
                         ASSERT_EQ(std::distance(manager.begin(), manager.end()), domains);
                         ASSERT_TRUE(domains == 0 || manager.begin()->second.domain == first);
                         ASSERT_FALSE(data::internal::GetPlane(manager));
                       });
    EXPECT_GT(failures, 500);
    EXPECT_TRUE(data::internal::GetRod(manager));
    EXPECT_TRUE(data::internal::Uninitialize(manager));
  }
}

TEST(InternalData, ReadersFindWithoutEntering) {
  NDomainManager const manager;
  EXPECT_FALSE(data::internal::GetCube(manager));  // makes the registry, if nothing has yet
  std::size_t const before = CountAllocations();
  EXPECT_FALSE(data::internal::GetPlane(manager));
  EXPECT_EQ(data::internal::GetPostureSceneRoot(manager), nullptr);
  EXPECT_EQ(CountAllocations(), before);
}

}  // namespace
}  // namespace corvanta::out_of_memory
