#include "tests/out_of_memory/failing_allocations.h"

namespace corvanta::out_of_memory {
namespace {

using data::domain::light::NLightDomain;
using data::domain::light::NLightNode;
using data::events::attribute_change::NMultiplexer;

class Listener final : public data::events::attribute_change::NListener {
 public:
  int heard = 0;

 private:
  void OnAttributeChangeImpl(core::attribute::NAttributeHost&,
                             core::attribute::NAttribute const&) override {
    ++heard;
  }
};

struct Host final : core::attribute::NAttributeHost {};

/// What can be seen of a domain from outside.
std::vector<std::pair<std::wstring, std::wstring>> Contents(NLightDomain const& domain) {
  std::vector<std::pair<std::wstring, std::wstring>> contents;
  for (auto i = domain.GetTypedNodeBegin(); i != domain.GetTypedNodeEnd(); ++i) {
    contents.emplace_back(i->GetID().ToString(), i->GetName());
    EXPECT_EQ(domain.QueryNode(i->GetID()), &*i);
    EXPECT_EQ(domain.QueryNamedObject(i->GetName()), &*i);
  }
  EXPECT_EQ(contents.size(), domain.GetNodeCount());
  EXPECT_EQ(contents.size(), domain.GetNamedObjectCount());
  return contents;
}

class Domain : public testing::Test {
 protected:
  Pointer<NLightDomain> const domain{new NLightDomain(nullptr, nullptr)};
  std::wstring const text = L"an id that is no GUID, so that it is kept as a text";

  void SetUp() override { domain->CreateNode(NNodeID()); }
};

TEST_F(Domain, CreateNodeLeavesNothingBehind) {
  // Often, so that the tables grow while they fail.
  for (int i = 0; i != 30; ++i) {
    auto const before = Contents(*domain);
    NNodeID const id(text + std::to_wstring(i));
    int const failures = FailEverywhere([&] { ASSERT_TRUE(domain->CreateNode(id)); },
                                        [&] { ASSERT_EQ(Contents(*domain), before); });
    EXPECT_GT(failures, 5);
    ASSERT_EQ(Contents(*domain).size(), before.size() + 1);
  }
}

TEST_F(Domain, AddNodeLeavesTheNodeAsItWas) {
  for (int i = 0; i != 30; ++i) {
    Pointer<NLightNode> const light(new NLightNode(NNodeID(), nullptr, nullptr));
    auto const before = Contents(*domain);
    FailEverywhere([&] { ASSERT_TRUE(domain->AddNode(*light, 0)); },
                   [&] {
                     ASSERT_EQ(Contents(*domain), before);
                     ASSERT_EQ(light->GetName(), L"light");
                     ASSERT_EQ(light->GetDomain(), nullptr);
                     ASSERT_EQ(light->GetNamespace(), nullptr);
                   });
    ASSERT_EQ(Contents(*domain).front().second, light->GetName());
  }
}

TEST_F(Domain, SetNameKeepsTheOldNameOrGivesTheNew) {
  auto const light = domain->CreateNode(NNodeID());
  light->SetName(L"lamp");
  auto const before = Contents(*domain);
  FailEverywhere([&] { light->SetName(L"light"); }, [&] { ASSERT_EQ(Contents(*domain), before); });
  EXPECT_EQ(light->GetName(), L"light (3)");
}

TEST_F(Domain, RegisterDomainKeepsTheOldOneAndDestroysNobody) {
  core::domain::NDomainManager manager;
  core::locator::NLocator const here(
      core::uri::NUri::CreateInternalUri(core::uri::NPath(L"/a place with a long name")));
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
  Pointer<Host> const host(new Host);
  for (int i = 0; i != 40; ++i) {
    std::wstring const name = L"attribute that nobody had before " + std::to_wstring(i);
    FailEverywhere([&] { ASSERT_NE(host->AddAttribute(name, true), nullptr); },
                   [&] { ASSERT_EQ(host->QueryAttribute(name), nullptr); });
  }
  auto& attribute = *host->GetAttributeBegin();
  core::variant::NVariant const texts[] = {L"a text that lies on the heap",
                                           L"another text, longer than the first one"};
  for (auto const& value : texts) {
    auto const before = attribute.GetValue();
    FailEverywhere([&] { attribute.SetValue(value, false); },
                   [&] { ASSERT_EQ(attribute.GetValue(), before); });
    EXPECT_EQ(attribute.GetValue(), value);
  }
}

TEST(Observers, AddObserverRegistersOrNot) {
  Pointer<NMultiplexer> const multiplexer(new NMultiplexer);
  Pointer<Host> const host(new Host);
  auto& attribute = *host->AddAttribute(L"a", true);
  std::vector<Pointer<Listener>> listeners;
  for (int i = 0; i != 40; ++i) listeners.emplace_back(new Listener);
  for (auto const& listener : listeners) {
    FailEverywhere([&] { ASSERT_TRUE(multiplexer->AddObserver(*listener)); },
                   [&] { ASSERT_FALSE(multiplexer->RemoveObserver(*listener)); });
  }
  multiplexer->OnAttributeChange(*host, attribute);
  for (auto const& listener : listeners) EXPECT_EQ(listener->heard, 1);
}

TEST(Observers, DeliveryAndRemovalAllocateNothing) {
  Pointer<data::events::NEventMultiplexer> const events(new data::events::NEventMultiplexer);
  auto& multiplexer = events->GetAttributeChangeEventMultiplexer();
  Pointer<NLightDomain> const domain(new NLightDomain(nullptr, &multiplexer));
  auto const light = domain->CreateNode(NNodeID());
  std::vector<Pointer<Listener>> listeners;
  for (int i = 0; i != 100; ++i) {
    listeners.emplace_back(new Listener);
    if (i % 5 != 0) multiplexer.AddObserver(*listeners.back());
    if (i % 5 == 1) listeners.back().reset();
  }
  std::size_t const before = CountAllocations();
  light->SetColorR(2);
  for (auto const& listener : listeners) {
    if (listener) multiplexer.RemoveObserver(*listener);
  }
  light->SetColorR(3);
  EXPECT_EQ(CountAllocations(), before);
}

TEST(Events, MultiplexerIsMadeWholeOrNot) {
  Pointer<data::events::NEventMultiplexer> events;
  EXPECT_GT(FailEverywhere([&] { events.reset(new data::events::NEventMultiplexer); },
                           [&] { ASSERT_EQ(events, nullptr); }),
            12);
}

}  // namespace
}  // namespace corvanta::out_of_memory
