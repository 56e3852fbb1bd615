#include "tests/support/test.h"

namespace corvanta::data::events {
namespace {

using core::attribute::NAttribute;
using core::attribute::NAttributeHost;
using core::locator::NLocator;
using domain::environment::NEnvironmentNode;
using domain::geometry::NGeometryChangeType;
using domain::geometry::NGeometryNode;
using domain::geometry::NSurface;
using domain::light_env::NLamp;
using domain::light_env::NLightEnvNode;
using domain::material::NMaterialNode;
using domain::material::texture_mapping::NTextureMapping;
using domain::scene::NSceneNode;
using domain::scenegraph::item::NSceneGraphItemNode;
using domain::scenegraph::item::NSceneGraphModelNode;
using domain::scenegraph::tree::NSceneGraphTreeHost;
using domain::scenegraph::tree::NSceneGraphTreeNode;
using domain::texture::NTextureNode;

/// A signal and its arguments: objects by address, so that a copied or exchanged one is seen.
struct Call {
  std::string signal;
  std::vector<void const*> objects;
  long number = 0;

  bool operator==(Call const&) const = default;
};
std::ostream& operator<<(std::ostream& out, Call const& call) {
  return out << call.signal << " with " << call.objects.size() << " objects and " << call.number;
}
template <class... T>
std::vector<void const*> At(T const&... objects) {
  return {static_cast<void const*>(&objects)...};
}

/// Stands for an object that nobody looks into: signals pass references on.
template <class T, int kNumber = 0>
T const& Token() {
  alignas(std::max_align_t) static std::byte const storage[64] = {};
  return *static_cast<T const*>(static_cast<void const*>(&storage));
}

class Recorder final : public NEventListener {
 public:
  std::vector<Call> calls;

 private:
  void OnAttributeChange(NAttributeHost& host, NAttribute const& attribute) override {
    calls.push_back({"attribute", At(host, attribute)});
  }
  void OnFloorImageChange(NEnvironmentNode const& node) override {
    calls.push_back({"floor image", At(node)});
  }
  void OnFloorGeometryChange(NEnvironmentNode const& node) override {
    calls.push_back({"floor geometry", At(node)});
  }
  void OnAddLightEnv(NEnvironmentNode const& node, NLightEnvNode const& lightEnv) override {
    calls.push_back({"add lights", At(node, lightEnv)});
  }
  void OnRemoveLightEnv(NEnvironmentNode const& node, NLightEnvNode const& lightEnv) override {
    calls.push_back({"remove lights", At(node, lightEnv)});
  }
  void OnEnvironmentMapImageChange(NMaterialNode const& node) override {
    calls.push_back({"map image, material", At(node)});
  }
  void OnEnvironmentMapImageChange(NEnvironmentNode const& node) override {
    calls.push_back({"map image, environment", At(node)});
  }
  void OnEnvironmentMapImageTypeChange(NMaterialNode const& node) override {
    calls.push_back({"map type, material", At(node)});
  }
  void OnEnvironmentMapImageTypeChange(NEnvironmentNode const& node) override {
    calls.push_back({"map type, environment", At(node)});
  }
  void OnGeometryChange(NSceneGraphModelNode const& model,
                        Pointer<NGeometryNode> const& old) override {
    calls.push_back({"geometry, model", At(model, old)});
  }
  void OnGeometryChange(NGeometryNode const& geometry, NSurface const& surface,
                        NGeometryChangeType type) override {
    calls.push_back({"geometry, surface", At(geometry, surface), type});
  }
  void OnAddTexture(NMaterialNode const& material, unsigned int index) override {
    calls.push_back({"add texture", At(material), static_cast<long>(index)});
  }
  void OnRemoveTexture(NMaterialNode const& material, Pointer<NTextureNode> const& texture,
                       Pointer<NTextureMapping> const& mapping) override {
    calls.push_back({"remove texture", At(material, texture, mapping)});
  }
  void OnSetBrdfTextureLocator(NMaterialNode const& material, NLocator const& locator) override {
    // The locator is the multiplexer's copy.
    calls.push_back(
        {"brdf", At(material), static_cast<long>(locator.GetZippedPath().ToString().size())});
  }
  void OnMaterialChange(NSceneGraphModelNode const& model,
                        Pointer<NMaterialNode> const& old) override {
    calls.push_back({"material", At(model, old)});
  }
  void OnAddChild(NSceneGraphItemNode const& parent, NSceneGraphItemNode const& child) override {
    calls.push_back({"add child", At(parent, child)});
  }
  void OnRemoveChild(NSceneGraphItemNode const& parent, NSceneGraphItemNode const& child) override {
    calls.push_back({"remove child", At(parent, child)});
  }
  void OnSceneGraphTreeChange(NSceneGraphTreeHost const& host,
                              Pointer<NSceneGraphTreeNode> const& old) override {
    calls.push_back({"tree", At(host, old)});
  }
  void OnSceneGraphTreeRootChange(NSceneGraphTreeNode const& tree,
                                  Pointer<NSceneGraphItemNode> const& old) override {
    calls.push_back({"root", At(tree, old)});
  }
  void OnSceneGraphTreeRootChange(NSceneGraphTreeHost const& host, NSceneGraphTreeNode const& tree,
                                  Pointer<NSceneGraphItemNode> const& old) override {
    calls.push_back({"root of the host's tree", At(host, tree, old)});
  }
  void OnTextureImageChange(NTextureNode const& texture) override {
    calls.push_back({"texture image", At(texture)});
  }
  void OnEnvironmentChange(NSceneNode const& scene, Pointer<NEnvironmentNode> const& old) override {
    calls.push_back({"environment", At(scene, old)});
  }
  void OnLampChange(NLightEnvNode const& lightEnv, NLamp const& lamp,
                    light_env::NLampEventType type) override {
    calls.push_back({"lamp", At(lightEnv, lamp), type});
  }
};

struct Row {
  Call expected;
  std::function<void()> raise;
};

/// Every kind's signals, raised at the listener side of the kind's multiplexer, and once more where
/// a multiplexer has a delivery of its own.
std::vector<Row> MakeRows(NEventMultiplexer const& m) {
  auto& attributes = m.GetAttributeChangeEventMultiplexer();
  auto& environments = m.GetEnvironmentEventMultiplexer();
  auto& maps = m.GetEnvironmentMapChangeEventMultiplexer();
  auto& geometries = m.GetGeometryChangeEventMultiplexer();
  auto& materials = m.GetMaterialEventMultiplexer();
  auto& scenes = m.GetSceneEventMultiplexer();
  auto& models = m.GetSceneGraphModelEventMultiplexer();
  auto& hierarchy = m.GetSceneGraphHierarchyEventMultiplexer();
  auto& trees = m.GetSceneGraphTreeEventMultiplexer();
  auto& hosts = m.GetSceneGraphTreeHostEventMultiplexer();
  auto& textures = m.GetTextureEventMultiplexer();
  auto& lightEnvs = m.GetLightEnvEventMultiplexer();
  scene_graph_hierarchy::NListener& hierarchyListener = hierarchy;
  scene_graph_tree_host::NListener& hostListener = hosts;

  static auto& node = const_cast<NAttributeHost&>(Token<NAttributeHost>());
  static auto const& value = Token<NAttribute>();
  static auto const& env = Token<NEnvironmentNode>();
  static auto const& lights = Token<NLightEnvNode>();
  static auto const& lamp = Token<NLamp>();
  static auto const& material = Token<NMaterialNode>();
  static auto const& geometry = Token<NGeometryNode>();
  static auto const& surface = Token<NSurface>();
  static auto const& model = Token<NSceneGraphModelNode>();
  static auto const& item = Token<NSceneGraphItemNode>();
  static auto const& child = Token<NSceneGraphItemNode, 1>();
  static auto const& tree = Token<NSceneGraphTreeNode>();
  static auto const& host = Token<NSceneGraphTreeHost>();
  static auto const& texture = Token<NTextureNode>();
  static auto const& scene = Token<NSceneNode>();
  static auto const& oldTexture = Token<Pointer<NTextureNode>>();
  static auto const& oldMapping = Token<Pointer<NTextureMapping>>();
  static auto const& oldEnv = Token<Pointer<NEnvironmentNode>>();
  static auto const& oldGeometry = Token<Pointer<NGeometryNode>>();
  static auto const& oldMaterial = Token<Pointer<NMaterialNode>>();
  static auto const& oldTree = Token<Pointer<NSceneGraphTreeNode>>();
  static auto const& oldRoot = Token<Pointer<NSceneGraphItemNode>>();
  static NLocator const locator(core::uri::NUri(), core::uri::NPath(L"entry"));
  constexpr auto kRemoved = domain::geometry::NGCT_SURFACE_REMOVED;
  constexpr auto kRenamed = light_env::NLET_LAMP_RENAMED;
  // clang-format off
  return {
      {{"attribute", At(node, value)}, [&] { attributes.OnAttributeChange(node, value); }},
      {{"floor image", At(env)}, [&] { environments.SignalFloorImageChange(env); }},
      {{"floor geometry", At(env)}, [&] { environments.SignalFloorGeometryChange(env); }},
      {{"add lights", At(env, lights)}, [&] { environments.SignalAddLightEnv(env, lights); }},
      {{"remove lights", At(env, lights)}, [&] { environments.SignalRemoveLightEnv(env, lights); }},
      {{"map image, material", At(material)}, [&] { maps.SignalImageChange(material); }},
      {{"map image, environment", At(env)}, [&] { maps.SignalImageChange(env); }},
      {{"map type, material", At(material)}, [&] { maps.SignalImageTypeChange(material); }},
      {{"map type, environment", At(env)}, [&] { maps.SignalImageTypeChange(env); }},
      {{"geometry, model", At(model, oldGeometry)},
       [&] { models.SignalGeometryChange(model, oldGeometry); }},
      {{"geometry, surface", At(geometry, surface), kRemoved},
       [&] { geometries.OnGeometryChange(geometry, surface, kRemoved); }},
      {{"add texture", At(material), 3}, [&] { materials.SignalAddTexture(material, 3); }},
      {{"remove texture", At(material, oldTexture, oldMapping)},
       [&] { materials.SignalRemoveTexture(material, oldTexture, oldMapping); }},
      {{"brdf", At(material), 5}, [&] { materials.SignalSetBrdfTextureLocator(material, locator); }},
      {{"material", At(model, oldMaterial)},
       [&] { models.SignalMaterialChange(model, oldMaterial); }},
      {{"add child", At(item, child)}, [&] { hierarchyListener.SignalAddChild(item, child); }},
      {{"add child", At(item, child)}, [&] { hierarchy.SignalAddChild(item, child); }},
      {{"remove child", At(item, child)}, [&] { hierarchyListener.SignalRemoveChild(item, child); }},
      {{"remove child", At(item, child)}, [&] { hierarchy.SignalRemoveChild(item, child); }},
      {{"tree", At(host, oldTree)}, [&] { hostListener.SignalSceneGraphTreeChange(host, oldTree); }},
      {{"tree", At(host, oldTree)}, [&] { hosts.SignalSceneGraphTreeChange(host, oldTree); }},
      {{"root", At(tree, oldRoot)}, [&] { trees.SignalRootChange(tree, oldRoot); }},
      {{"root of the host's tree", At(host, tree, oldRoot)},
       [&] { hostListener.SignalSceneGraphTreeRootChange(host, tree, oldRoot); }},
      {{"root of the host's tree", At(host, tree, oldRoot)},
       [&] { hosts.SignalSceneGraphTreeRootChange(host, tree, oldRoot); }},
      {{"texture image", At(texture)}, [&] { textures.SignalTextureImageChange(texture); }},
      {{"environment", At(scene, oldEnv)}, [&] { scenes.SignalEnvironmentChange(scene, oldEnv); }},
      {{"lamp", At(lights, lamp), kRenamed},
       [&] { lightEnvs.SignalLampChange(lights, lamp, kRenamed); }},
  };
  // clang-format on
}

TEST(EventMultiplexers, PassEverySignalOnOnceAsItCame) {
  Pointer<NEventMultiplexer> const events(new NEventMultiplexer);
  Pointer<Recorder> const first(new Recorder), second(new Recorder);
  struct Silent final : NEventListener {};
  Pointer<Silent> const silent(new Silent);
  events->AddObserver(*silent);
  events->AddObserver(*first);
  events->AddObserver(*second);
  for (Row const& row : MakeRows(*events)) {
    row.raise();
    EXPECT_THAT(std::exchange(first->calls, {}), ElementsAre(row.expected));
    EXPECT_THAT(std::exchange(second->calls, {}), ElementsAre(row.expected));
  }
}

TEST(EventMultiplexers, HearNothingBetweenDetachAndReattach) {
  Pointer<NEventMultiplexer> const events(new NEventMultiplexer);
  Pointer<Recorder> const recorder(new Recorder);
  events->AddObserver(*recorder);
  auto const rows = MakeRows(*events);
  auto const raiseAll = [&] {
    for (Row const& row : rows) row.raise();
    return std::exchange(recorder->calls, {}).size();
  };
  events->Reattach();
  EXPECT_EQ(raiseAll(), rows.size()) << "attached twice is attached once";
  events->Detach();
  events->Detach();
  EXPECT_EQ(raiseAll(), 0u);
  events->Reattach();
  EXPECT_EQ(raiseAll(), rows.size());
}

/// Hears attribute changes at the multiplexer of the kind; `react` runs after the name is noted.
class Direct final : public attribute_change::NListener {
 public:
  std::vector<std::wstring> names;
  std::function<void(NAttributeHost&, NAttribute const&)> react;

 private:
  void OnAttributeChangeImpl(NAttributeHost& host, NAttribute const& attribute) override {
    names.push_back(attribute.GetName() + L" " + std::to_wstring(attribute.GetLong()));
    if (react) react(host, attribute);
  }
};

class LightEvents : public testing::Test {
 protected:
  Pointer<NEventMultiplexer> events{new NEventMultiplexer};
  Pointer<attribute_change::NMultiplexer> multiplexer{
      &events->GetAttributeChangeEventMultiplexer()};
  Pointer<domain::light::NLightDomain> domain{
      new domain::light::NLightDomain(nullptr, multiplexer.get())};
  Pointer<domain::light::NLightNode> light = domain->CreateNode(NNodeID());
  Pointer<Direct> direct{new Direct};
  Pointer<Recorder> recorder{new Recorder};

  void SetUp() override {
    multiplexer->AddObserver(*direct);
    events->AddObserver(*recorder);
  }
};

TEST_F(LightEvents, ReachDirectAndCentralListenersOnceWhileAttached) {
  light->SetColorR(2);
  EXPECT_EQ(direct->names.size(), 1u);
  EXPECT_THAT(recorder->calls,
              ElementsAre(Call{"attribute", At(static_cast<NAttributeHost&>(*light),
                                               *light->QueryAttribute(L"color.r"))}));
  events->Detach();
  light->SetColorR(3);
  EXPECT_EQ(direct->names.size(), 2u);
  EXPECT_EQ(recorder->calls.size(), 1u);
  light->QueryAttribute(L"color.r")->SetValue(4.0, false);
  EXPECT_EQ(direct->names.size(), 2u) << "a silent write";
}

TEST_F(LightEvents, GoOnWithoutTheCentralMultiplexerAndTheDomain) {
  events.reset();
  domain.reset();
  light->SetColorR(2);
  EXPECT_EQ(direct->names.size(), 1u);
  EXPECT_TRUE(recorder->calls.empty());
  Pointer<domain::light::NLightNode> const unheard(
      new domain::light::NLightNode(NNodeID(), nullptr, nullptr));
  unheard->SetColorR(2);
  EXPECT_EQ(unheard->GetColorR(), 2);
  EXPECT_EQ(direct->names.size(), 1u);
}

/// The nested event is over before the outer one reaches the next listener.
TEST_F(LightEvents, NestDepthFirst) {
  Pointer<Direct> const later(new Direct);
  multiplexer->AddObserver(*later);
  direct->react = [this](NAttributeHost&, NAttribute const& attribute) {
    if (attribute.GetName() == L"color.r") light->SetColorG(7);
  };
  light->SetColorR(5);
  EXPECT_THAT(direct->names, ElementsAre(L"color.r 5", L"color.g 7"));
  EXPECT_THAT(later->names, ElementsAre(L"color.g 7", L"color.r 5"));
}

TEST_F(LightEvents, ExceptionReachesTheSetterWithTheValueInPlace) {
  Pointer<Direct> const later(new Direct);
  multiplexer->AddObserver(*later);
  direct->react = [](NAttributeHost&, NAttribute const&) { throw 1; };
  EXPECT_THROW(light->SetColorR(5), int);
  EXPECT_EQ(light->GetColorR(), 5);
  EXPECT_TRUE(later->names.empty());
  direct->react = nullptr;
  light->SetColorR(6);
  EXPECT_EQ(later->names.size(), 1u);
}

/// The handler takes the light out of its domain and drops everything that leads to it.
TEST_F(LightEvents, HandlerMayEndTheNodeTheDomainAndTheEventSystem) {
  Pointer<Direct> const later(new Direct);
  multiplexer->AddObserver(*later);
  direct->react = [this](NAttributeHost&, NAttribute const&) {
    domain->RemoveNode(*light);
    light.reset();
    domain.reset();
    events.reset();
    multiplexer.reset();
  };
  light->SetType(L"a kind of light with a long name");
  EXPECT_EQ(later->names.size(), 1u);
}

}  // namespace
}  // namespace corvanta::data::events
