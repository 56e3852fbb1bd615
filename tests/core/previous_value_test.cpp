#include "tests/support/world.h"

// What a listener can ask for beside the new value, and who comes to a domain and leaves it.
namespace corvanta::core {
namespace {

using testing::Pair;
using Log = std::vector<std::pair<std::wstring, std::wstring>>;

TEST(PreviousValue, BelongsToTheInnermostWriteOfItsAttribute) {
  World world;
  auto const light = world.lights->CreateNode();
  NAttribute& type = *light->QueryAttribute(L"type");
  NAttribute& red = *light->QueryAttribute(L"color.r");
  auto const first = world.ListenToAttributes();
  auto const second = world.ListenToAttributes();
  Log texts;
  std::vector<double> reds;
  first->react = [&](NAttribute const& attribute) {
    texts.emplace_back(type.GetPreviousValue().GetString(), type.GetString());
    if (&attribute == &type && type.GetString() == L"a") {
      red.SetValue(5.0, true);
      type.SetValue(L"b", true);
      type.SetValue(L"c", false);  // whose write nobody hears
    }
    reds.push_back(red.GetPreviousValue().GetDouble());
  };
  second->react = [&](NAttribute const& attribute) {
    if (&attribute == &type) {
      texts.emplace_back(type.GetPreviousValue().GetString(), type.GetString());
    }
  };
  type.SetValue(L"a", true);
  EXPECT_THAT(texts, ElementsAre(Pair(L"directional", L"a"),  // the outer write, then
                                 Pair(L"directional", L"a"),  // that of the colour within it,
                                 Pair(L"a", L"b"), Pair(L"a", L"b"),  // the inner one to both,
                                 Pair(L"directional", L"c")));        // and the outer one's rest
  EXPECT_THAT(reds, ElementsAre(1.0, 5.0, 5.0));
  EXPECT_EQ(type.GetPreviousValue().GetString(), L"c") << "outside of all it is the value itself";

  first->react = [&](NAttribute const&) { throw std::runtime_error("a listener's"); };
  EXPECT_THROW(type.SetValue(L"d", true), std::runtime_error);
  EXPECT_EQ(type.GetPreviousValue().GetString(), L"d");
  first->react = [&](NAttribute const&) {
    EXPECT_TRUE(red.GetPreviousValue() == NVariant(L"text"));
  };
  red.SetValue(L"text", false);
  red.SetValue(1.0, true);
}

class NameLog final : public name::NNameListener {
 public:
  Log names;
  std::function<void()> react;

 private:
  void OnSetName(name::NNamespace const&, name::NNamedObject const& object) override {
    names.emplace_back(object.GetPreviousName(), object.GetName());
    if (auto const call = react) call();
  }
};

TEST(PreviousValue, IsTheNameBeforeInItsEvent) {
  World world;
  auto const light = world.lights->CreateNode();
  auto const early = New<NameLog>();
  auto const late = New<NameLog>();
  world.lights->AddNameListener(*early);
  world.lights->AddNameListener(*late);
  light->SetName(L"a name that is longer than what a text holds in itself");
  light->SetName(L"a");
  early->react = [&] {
    early->react = nullptr;
    light->SetName(L"b");
  };
  light->SetName(L"a");  // its own, which is told too
  EXPECT_THAT(late->names,
              ElementsAre(Pair(L"light", L"a name that is longer than what a text holds in itself"),
                          Pair(L"a name that is longer than what a text holds in itself", L"a"),
                          Pair(L"a", L"b"), Pair(L"b", L"b")));
  EXPECT_EQ(light->GetPreviousName(), L"b");
}

/// Writes down "+name", in brackets if the node isn't there any more, and "-name before next".
class Comings final : public NDomainListener {
 public:
  std::vector<std::wstring> heard;
  std::function<void(node::NNode&)> react;

 private:
  void OnNodeAdded(domain::NDomainBase const& domain, node::NNode& node) override {
    bool const isIn = node.GetDomain() == &domain && domain.QueryNode(node.GetID()) == &node;
    heard.push_back((isIn ? L"+" : L"(+)") + node.GetName());
    if (react) react(node);
  }
  void OnNodeRemoved(domain::NDomainBase const& domain, node::NNode& node,
                     node::NNode const* next) override {
    EXPECT_EQ(node.GetDomain(), nullptr);
    EXPECT_FALSE(domain.QueryNode(node.GetID()));
    heard.push_back(L"-" + node.GetName() + (next ? L" before " + next->GetName() : L""));
    if (react) react(node);
  }
};

TEST(DomainListener, HearsOfNodesThatComeAndGo) {
  std::optional<World> world(std::in_place);
  auto const lights = world->lights;
  auto const comings = New<Comings>();
  auto const second = New<Comings>();
  EXPECT_TRUE(lights->AddDomainListener(*comings) && lights->AddDomainListener(*second));
  EXPECT_FALSE(lights->AddDomainListener(*comings));
  auto a = lights->CreateNode();
  auto const b = lights->CreateNode();
  EXPECT_FALSE(lights->AddNode(*a));  // a refusal says nothing
  auto* const address = a.get();
  a.reset();
  lights->RemoveNode(*address);  // held until all have heard
  lights->RemoveNode(*b);
  EXPECT_TRUE(lights->AddNodeBefore(*b, nullptr));
  std::vector<std::wstring> const heard{L"+light", L"+light (2)", L"-light before light (2)",
                                        L"-light (2)", L"+light (2)"};
  EXPECT_EQ(comings->heard, heard);
  EXPECT_EQ(second->heard, heard);

  // What listeners do: take the node out again, and throw.
  second->heard.clear();
  comings->react = [&](node::NNode& node) {
    comings->react = nullptr;
    node.GetDomain()->RemoveNode(node);
  };
  auto const c = lights->CreateNode();
  ASSERT_TRUE(c);
  EXPECT_EQ(c->GetDomain(), nullptr);
  EXPECT_THAT(second->heard, ElementsAre(L"-light", L"(+)light")) << "the inner one comes first";
  comings->react = [](node::NNode&) { throw std::runtime_error("a listener's"); };
  EXPECT_THROW(lights->CreateNode(), std::runtime_error);
  EXPECT_EQ(lights->GetNodeCount(), 2u) << "the change stands";
  EXPECT_THROW(lights->RemoveNode(*b), std::runtime_error);
  EXPECT_EQ(lights->GetNodeCount(), 1u);
  EXPECT_TRUE(lights->RemoveDomainListener(*comings));
  EXPECT_FALSE(lights->RemoveDomainListener(*comings));

  second->heard.clear();
  world.reset();
  EXPECT_THAT(second->heard, IsEmpty()) << "an end raises nothing";
}

TEST(DomainListener, PlacesANodeBeforeAnother) {
  World world;
  auto const a = world.lights->CreateNode();
  auto const b = world.lights->CreateNode();
  auto const camera = world.cameras->CreateNode();
  world.lights->RemoveNode(*b);
  EXPECT_FALSE(world.lights->AddNodeBefore(*b, camera.get()));
  EXPECT_FALSE(world.lights->AddNodeBefore(*b, b.get()));
  EXPECT_TRUE(world.lights->AddNodeBefore(*b, a.get()));
  EXPECT_EQ(&*world.lights->GetNodeBegin(), b.get());
}

}  // namespace
}  // namespace corvanta::core
