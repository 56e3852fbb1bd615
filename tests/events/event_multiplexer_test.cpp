#include "tests/support/world.h"

namespace corvanta::data::events {
namespace {

using support::AttributeLog;
using testing::Pair;

/// All that a signal carries; of the locator, which is the multiplexer's copy, the entry.
auto GetFields(NSignal const& s) {
  return std::tuple(s.kind, std::string(s.name), s.node, s.other, s.host, s.attribute, s.surface,
                    s.mapping, s.locator ? s.locator->GetZippedPath().ToString() : L"", s.treeHost,
                    s.tree, s.index);
}

class Recorder final : public NForwardingListener {
 public:
  std::vector<decltype(GetFields({}))> signals;

 private:
  void OnSignal(NSignal const& signal) override { signals.push_back(GetFields(signal)); }
};

struct Row {
  NSignal expected;
  std::function<void()> raise;
};

/// Nodes that signals can be about.
struct Subjects : World {
  Pointer<NLightEnvNode> lights = lightEnvs->CreateNode();
  Pointer<NLamp> lamp = lights->CreateLamp(L"lamp");
  NAttribute& value = *lights->GetAttributeBegin();
  Pointer<NEnvironmentNode> env = environments->CreateNode(), oldEnv = environments->CreateNode();
  Pointer<NMaterialNode> material = materials->CreateNode(), oldMaterial = materials->CreateNode();
  Pointer<NGeometryNode> geometry = geometries->CreateNode(),
                         oldGeometry = geometries->CreateNode();
  Pointer<NSurface> surface = New<NPolygonSurface>();
  Model model = Make<NSceneGraphModelNode>();
  Item item = Make(), child = Make(), oldRoot = Make();
  Tree tree = MakeTree(), oldTree = MakeTree();
  Reference host = Make<NSceneGraphReferenceNode>();
  Pointer<NTextureNode> texture = textures->CreateNode(), oldTexture = textures->CreateNode();
  Pointer<NTextureMapping> mapping = New<NProjectionMapping>();
  Pointer<NSceneNode> scene = scenes->CreateNode();
  NLocator const locator{NUri(), NPath(L"entry")};
};

/// Every kind's signals, raised at the listener side of the kind's multiplexer, and once more where
/// a multiplexer has a delivery of its own.
std::vector<Row> MakeRows(NEventMultiplexer const& m, Subjects const& s) {
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

  NAttributeHost& lights = *s.lights;
  NSignal const addChild{NSK_ADD_CHILD, "addChild", s.item.get(), s.child.get()};
  NSignal const removeChild{NSK_REMOVE_CHILD, "removeChild", s.item.get(), s.child.get()};
  NSignal const treeChange{.kind = NSK_SCENE_GRAPH_TREE_CHANGE,
                           .name = "sceneGraphTreeChange",
                           .node = s.host.get(),
                           .other = s.oldTree.get(),
                           .treeHost = s.host.get()};
  NSignal const shownRoot{.kind = NSK_SHOWN_ROOT_CHANGE,
                          .name = "sceneGraphTreeRootChange",
                          .node = s.host.get(),
                          .other = s.oldRoot.get(),
                          .treeHost = s.host.get(),
                          .tree = s.tree.get()};
  constexpr auto kRemoved = domain::geometry::NGCT_SURFACE_REMOVED;
  constexpr auto kRenamed = light_env::NLET_LAMP_RENAMED;
  // clang-format off
  return {
      {{.kind = NSK_ATTRIBUTE_CHANGE, .name = "attributeChange", .node = s.lights.get(), .host = &lights, .attribute = &s.value},
       [&] { attributes.OnAttributeChange(lights, s.value); }},
      {{NSK_FLOOR_IMAGE_CHANGE, "floorImageChange", s.env.get()}, [&] { environments.SignalFloorImageChange(*s.env); }},
      {{NSK_FLOOR_GEOMETRY_CHANGE, "floorGeometryChange", s.env.get()}, [&] { environments.SignalFloorGeometryChange(*s.env); }},
      {{NSK_ADD_LIGHT_ENV, "addLightEnv", s.env.get(), s.lights.get()}, [&] { environments.SignalAddLightEnv(*s.env, *s.lights); }},
      {{NSK_REMOVE_LIGHT_ENV, "removeLightEnv", s.env.get(), s.lights.get()}, [&] { environments.SignalRemoveLightEnv(*s.env, *s.lights); }},
      {{NSK_ENVIRONMENT_MAP_IMAGE_CHANGE, "environmentMapImageChange", s.material.get()}, [&] { maps.SignalImageChange(*s.material); }},
      {{NSK_ENVIRONMENT_MAP_IMAGE_CHANGE, "environmentMapImageChange", s.env.get()}, [&] { maps.SignalImageChange(*s.env); }},
      {{NSK_ENVIRONMENT_MAP_IMAGE_TYPE_CHANGE, "environmentMapImageTypeChange", s.material.get()}, [&] { maps.SignalImageTypeChange(*s.material); }},
      {{NSK_ENVIRONMENT_MAP_IMAGE_TYPE_CHANGE, "environmentMapImageTypeChange", s.env.get()}, [&] { maps.SignalImageTypeChange(*s.env); }},
      {{NSK_GEOMETRY_CHANGE, "geometryChange", s.model.get(), s.oldGeometry.get()}, [&] { models.SignalGeometryChange(*s.model, s.oldGeometry); }},
      {{.kind = NSK_SURFACE_CHANGE, .name = "surfaceRemoved", .node = s.geometry.get(), .surface = s.surface.get()},
       [&] { geometries.OnGeometryChange(*s.geometry, *s.surface, kRemoved); }},
      {{.kind = NSK_ADD_TEXTURE, .name = "addTexture", .node = s.material.get(), .index = 3}, [&] { materials.SignalAddTexture(*s.material, 3); }},
      {{.kind = NSK_REMOVE_TEXTURE, .name = "removeTexture", .node = s.material.get(), .other = s.oldTexture.get(), .mapping = s.mapping.get()},
       [&] { materials.SignalRemoveTexture(*s.material, s.oldTexture, s.mapping); }},
      {{.kind = NSK_SET_BRDF_TEXTURE_LOCATOR, .name = "setBrdfTextureLocator", .node = s.material.get(), .locator = &s.locator},
       [&] { materials.SignalSetBrdfTextureLocator(*s.material, s.locator); }},
      {{NSK_MATERIAL_CHANGE, "materialChange", s.model.get(), s.oldMaterial.get()}, [&] { models.SignalMaterialChange(*s.model, s.oldMaterial); }},
      {addChild, [&] { hierarchyListener.SignalAddChild(*s.item, *s.child); }},
      {addChild, [&] { hierarchy.SignalAddChild(*s.item, *s.child); }},
      {removeChild, [&] { hierarchyListener.SignalRemoveChild(*s.item, *s.child); }},
      {removeChild, [&] { hierarchy.SignalRemoveChild(*s.item, *s.child); }},
      {treeChange, [&] { hostListener.SignalSceneGraphTreeChange(*s.host, s.oldTree); }},
      {treeChange, [&] { hosts.SignalSceneGraphTreeChange(*s.host, s.oldTree); }},
      {{.kind = NSK_SCENE_GRAPH_TREE_ROOT_CHANGE, .name = "sceneGraphTreeRootChange", .node = s.tree.get(), .other = s.oldRoot.get(), .tree = s.tree.get()},
       [&] { trees.SignalRootChange(*s.tree, s.oldRoot); }},
      {shownRoot, [&] { hostListener.SignalSceneGraphTreeRootChange(*s.host, *s.tree, s.oldRoot); }},
      {shownRoot, [&] { hosts.SignalSceneGraphTreeRootChange(*s.host, *s.tree, s.oldRoot); }},
      {{NSK_TEXTURE_IMAGE_CHANGE, "textureImageChange", s.texture.get()}, [&] { textures.SignalTextureImageChange(*s.texture); }},
      {{NSK_ENVIRONMENT_CHANGE, "environmentChange", s.scene.get(), s.oldEnv.get()}, [&] { scenes.SignalEnvironmentChange(*s.scene, s.oldEnv); }},
      {{NSK_LAMP_CHANGE, "lampRenamed", s.lights.get(), s.lamp.get()}, [&] { lightEnvs.SignalLampChange(*s.lights, *s.lamp, kRenamed); }},
  };
  // clang-format on
}

TEST(EventMultiplexers, PassEverySignalOnOnceAsItCame) {
  Subjects const subjects;
  auto const events = New<NEventMultiplexer>();
  auto const first = New<Recorder>(), second = New<Recorder>();
  struct Silent final : NEventListener {};
  auto const silent = New<Silent>();
  events->AddObserver(*silent);
  events->AddObserver(*first);
  events->AddObserver(*second);
  for (Row const& row : MakeRows(*events, subjects)) {
    row.raise();
    EXPECT_THAT(std::exchange(first->signals, {}), ElementsAre(GetFields(row.expected)));
    EXPECT_THAT(std::exchange(second->signals, {}), ElementsAre(GetFields(row.expected)));
  }
}

TEST(EventMultiplexers, HearNothingBetweenDetachAndReattach) {
  Subjects const subjects;
  auto const events = New<NEventMultiplexer>();
  auto const log = New<support::EventLog>(true);
  events->AddObserver(*log);
  auto const rows = MakeRows(*events, subjects);
  auto const raiseAll = [&] {
    for (Row const& row : rows) row.raise();
    return log->Take().size();
  };
  events->Reattach();
  EXPECT_EQ(raiseAll(), rows.size()) << "attached twice is attached once";
  events->Detach();
  events->Detach();
  EXPECT_EQ(raiseAll(), 0u);
  events->Reattach();
  EXPECT_EQ(raiseAll(), rows.size());
}

class LightEvents : public testing::Test {
 protected:
  Pointer<NEventMultiplexer> events = New<NEventMultiplexer>();
  Pointer<attribute_change::NMultiplexer> multiplexer{
      &events->GetAttributeChangeEventMultiplexer()};
  Pointer<NLightDomain> domain{new NLightDomain(nullptr, multiplexer.get())};
  Pointer<NLightNode> light = domain->CreateNode();
  Pointer<AttributeLog> direct = New<AttributeLog>(), later = New<AttributeLog>();
  Pointer<Recorder> recorder = New<Recorder>();

  void SetUp() override {
    multiplexer->AddObserver(*direct);
    multiplexer->AddObserver(*later);
    events->AddObserver(*recorder);
  }
};

TEST_F(LightEvents, ReachDirectAndCentralListenersOnceWhileAttached) {
  light->SetColorR(2);
  EXPECT_EQ(direct->writes.size(), 1u);
  EXPECT_THAT(recorder->signals,
              ElementsAre(GetFields({.kind = NSK_ATTRIBUTE_CHANGE,
                                     .name = "attributeChange",
                                     .node = light.get(),
                                     .host = light.get(),
                                     .attribute = light->QueryAttribute(L"color.r")})));
  events->Detach();
  light->SetColorR(3);
  EXPECT_EQ(direct->writes.size(), 2u);
  EXPECT_EQ(recorder->signals.size(), 1u);
  light->QueryAttribute(L"color.r")->SetValue(4.0, false);
  EXPECT_EQ(direct->writes.size(), 2u) << "a silent write";
}

TEST_F(LightEvents, GoOnWithoutTheCentralMultiplexerAndTheDomain) {
  events.reset();
  domain.reset();
  light->SetColorR(2);
  EXPECT_EQ(direct->writes.size(), 1u);
  EXPECT_TRUE(recorder->signals.empty());
  auto const unheard = New<NLightNode>(NNodeID(), nullptr, nullptr);
  unheard->SetColorR(2);
  EXPECT_EQ(unheard->GetColorR(), 2);
  EXPECT_EQ(direct->writes.size(), 1u);
}

/// The nested event is over before the outer one reaches the next listener.
TEST_F(LightEvents, NestDepthFirst) {
  direct->react = [this](NAttribute const& attribute) {
    if (attribute.GetName() == L"color.r") light->SetColorG(7);
  };
  light->SetColorR(5);
  EXPECT_THAT(direct->writes, ElementsAre(Pair(L"color.r", 5), Pair(L"color.g", 7)));
  EXPECT_THAT(later->writes, ElementsAre(Pair(L"color.g", 7), Pair(L"color.r", 5)));
}

TEST_F(LightEvents, ExceptionReachesTheSetterWithTheValueInPlace) {
  direct->react = [](NAttribute const&) { throw 1; };
  EXPECT_THROW(light->SetColorR(5), int);
  EXPECT_EQ(light->GetColorR(), 5);
  EXPECT_TRUE(later->writes.empty());
  direct->react = nullptr;
  light->SetColorR(6);
  EXPECT_EQ(later->writes.size(), 1u);
}

/// The handler takes the light out of its domain and drops everything that leads to it.
TEST_F(LightEvents, HandlerMayEndTheNodeTheDomainAndTheEventSystem) {
  direct->react = [this](NAttribute const&) {
    domain->RemoveNode(*light);
    light.reset();
    domain.reset();
    events.reset();
    multiplexer.reset();
  };
  light->SetType(L"a kind of light with a long name");
  EXPECT_EQ(later->writes.size(), 1u);
}

}  // namespace
}  // namespace corvanta::data::events
