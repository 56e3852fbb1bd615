#include "tests/out_of_memory/failing_allocations.h"
#include "tests/out_of_memory/world.h"

namespace corvanta::out_of_memory {
namespace {

TEST(DomainManager, RegisterDomainKeepsTheOldOneAndDestroysNobody) {
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
