#include <ostream>

#include "tests/support/world.h"

// What every kind of node has in common. The attributes themselves, their defaults and accessors
// are held by docs/attributes.md, which tests/attribute_page compares with live nodes.
namespace corvanta::node_kinds {
namespace {

using namespace data::domain;

struct NodeKind {
  char const* className;
  wchar_t const* type;      // the domain's DT_ pointer
  wchar_t const* typeText;  // and its characters
  wchar_t const* domainName;
  wchar_t const* nodeName;
  bool isCopied;  // whether the class offers CopyTo
  std::function<Pointer<NNode>(NDocument&)> make;
  std::function<void(NNode const&, NNode&)> copy;  // empty where it doesn't
};

void PrintTo(NodeKind const& kind, std::ostream* out) { *out << kind.className; }

template <class Node>
std::function<void(NNode const&, NNode&)> MakeCopy() {
  if constexpr (requires(Node const& source, Node& target) { source.CopyTo(target); }) {
    return [](NNode const& source, NNode& target) {
      dynamic_cast<Node const&>(source).CopyTo(dynamic_cast<Node&>(target));
    };
  }
  return {};
}

// Every kind that a visitor can meet: class, type, type's text, names of domain and node, whether
// it is copied, domain.
// clang-format off
#define CORVANTA_EVERY_KIND(KIND) \
  KIND(NAnimationNode, DT_ANIMATION, L"animation", L"animation", L"animation", true, GetAnimations) \
  KIND(NCameraNode, DT_CAMERA, L"camera", L"camera", L"camera", true, GetCameras) \
  KIND(NEnvironmentNode, DT_ENVIRONMENT, L"environment", L"environment", L"environment", true, GetEnvironments) \
  KIND(NGeometryNode, DT_GEOMETRY, L"geometry", L"geometry", L"geometry", true, GetGeometries) \
  KIND(NImageNode, DT_IMAGE, L"image", L"image", L"image", true, GetImages) \
  KIND(NLightNode, DT_LIGHT, L"light", L"light", L"light", true, GetLights) \
  KIND(NLightEnvNode, DT_LIGHT_ENV, L"lightenvironment", L"light environment", L"light environment", true, GetLightEnvs) \
  KIND(NMaterialNode, DT_MATERIAL, L"material", L"material", L"material", true, GetMaterials) \
  KIND(NMovieNode, DT_MOVIE, L"movie", L"movie", L"movie", false, GetMovies) \
  KIND(NProjectionNode, DT_PROJECTION, L"projection", L"projection", L"projection", false, GetProjections) \
  KIND(NSceneNode, DT_SCENE, L"scene", L"scene", L"scene", false, GetScenes) \
  KIND(NSceneGraphTreeNode, DT_SCENEGRAPH_TREE, L"scenegraphtree", L"scene graph tree", L"scene graph tree", true, GetTrees) \
  KIND(NSoundNode, DT_SOUND, L"sound", L"sound", L"sound", false, GetSounds) \
  KIND(NTextureNode, DT_TEXTURE, L"texture", L"texture", L"texture", true, GetTextures) \
  KIND(NSceneGraphCameraNode, DT_SCENEGRAPH_ITEM, L"scenegraphitem", L"scene graph item", L"camera", false, GetItems) \
  KIND(NSceneGraphGroupNode, DT_SCENEGRAPH_ITEM, L"scenegraphitem", L"scene graph item", L"group", true, GetItems) \
  KIND(NSceneGraphLightNode, DT_SCENEGRAPH_ITEM, L"scenegraphitem", L"scene graph item", L"light", false, GetItems) \
  KIND(NSceneGraphModelNode, DT_SCENEGRAPH_ITEM, L"scenegraphitem", L"scene graph item", L"model", true, GetItems) \
  KIND(NSceneGraphReferenceNode, DT_SCENEGRAPH_ITEM, L"scenegraphitem", L"scene graph item", L"reference", false, GetItems)
#define CORVANTA_KIND_ROW(CLASS, TYPE, TEXT, DOMAIN_NAME, NAME, IS_COPIED, GET) \
  {#CLASS, TYPE, TEXT, DOMAIN_NAME, NAME, IS_COPIED, [](NDocument& d) { return d.GET().template CreateNode<CLASS>(); }, MakeCopy<CLASS>()},
#define CORVANTA_MEET_CONST(CLASS, ...) void VisitImpl(CLASS const&) override { met.push_back(#CLASS); }
#define CORVANTA_MEET(CLASS, ...) void VisitImpl(CLASS&) override { met.push_back(#CLASS); }
// clang-format on

NodeKind const kKinds[] = {CORVANTA_EVERY_KIND(CORVANTA_KIND_ROW)};

struct Watcher final : NNodeWatcher {
  virtual ~Watcher() = default;
  std::vector<std::string> met;

 private:
  CORVANTA_EVERY_KIND(CORVANTA_MEET_CONST)
};

struct Modifier final : NNodeModifier {
  virtual ~Modifier() = default;
  std::vector<std::string> met;

 private:
  CORVANTA_EVERY_KIND(CORVANTA_MEET)
};

/// A value of the attribute's kind that isn't its own, another one for each `index`.
NVariant MakeProbe(NAttribute const& attribute, long index) {
  switch (attribute.GetKind()) {
    case core::variant::NVK_DOUBLE:
      return attribute.GetDouble() + 0.375 + static_cast<double>(index);
    case core::variant::NVK_LONG:
      return attribute.GetLong() + 1 + index;
    case core::variant::NVK_BOOL:
      return !attribute.GetBool();
    case core::variant::NVK_STRING:
      return L"text " + std::to_wstring(index);
    default:
      return NVariant();
  }
}

struct NodeKindTest : testing::TestWithParam<NodeKind> {
  World world;
  Pointer<support::AttributeLog> const log = world.ListenToAttributes();
  Pointer<NNode> node = GetParam().make(world.document);
};

TEST_P(NodeKindTest, StartsInItsDomainUnderItsName) {
  EXPECT_EQ(node->GetDomain()->GetType(), GetParam().type);
  EXPECT_STREQ(GetParam().type, GetParam().typeText);
  EXPECT_EQ(DomainTypeFromString(GetParam().typeText), GetParam().type);
  EXPECT_EQ(node->GetDomain()->GetName(), GetParam().domainName);
  EXPECT_EQ(node->GetName(), GetParam().nodeName);
  EXPECT_FALSE(node->GetResource());
  EXPECT_THAT(log->writes, IsEmpty()) << "a default was told";
}

TEST_P(NodeKindTest, TellsOfEachAttributeOnceAndCopiesNameAndValues) {
  std::vector<std::wstring> names;
  long index = 0;
  for (auto i = node->GetAttributeBegin(); i != node->GetAttributeEnd(); ++i, ++index) {
    bool const isEmpty = i->GetKind() == core::variant::NVK_NONE;
    i->SetValue(MakeProbe(*i, index), true);
    EXPECT_THAT(log->TakeNames(), ElementsAre(i->GetName()));
    if (!isEmpty) names.push_back(i->GetName());
  }
  ASSERT_EQ(static_cast<bool>(GetParam().copy), GetParam().isCopied);
  if (!GetParam().isCopied) return;
  auto const target = GetParam().make(world.document);
  NNodeID const id = target->GetID();
  node->SetName(L"copied");
  GetParam().copy(*node, *target);
  EXPECT_THAT(log->TakeNames(), ElementsAreArray(names));
  for (auto i = node->GetAttributeBegin(); i != node->GetAttributeEnd(); ++i) {
    EXPECT_TRUE(target->QueryAttribute(i->GetName())->GetValue() == i->GetValue());
  }
  GetParam().copy(*node, *target);              // which counts no name up
  EXPECT_EQ(target->GetName(), L"copied (2)");  // the source bears the name in the same domain
  EXPECT_TRUE(target->GetID() == id);
  EXPECT_EQ(target->GetDomain(), node->GetDomain());
}

TEST_P(NodeKindTest, IsTheHostOfTheAttributesItTellsOf) {
  node->AddAttribute(L"one of the program", true);
  auto const events = world.Listen(true);
  for (auto i = node->GetAttributeBegin(); i != node->GetAttributeEnd(); ++i) {
    events->react = [&](NSignal const& signal) {
      EXPECT_EQ(signal.host, static_cast<NAttributeHost*>(node.get()));
      EXPECT_EQ(signal.node, node.get());
      EXPECT_EQ(signal.attribute, &*i);
      EXPECT_EQ(&signal.attribute->GetHost(), signal.host);
    };
    i->SetValue(i->GetValue(), true);
    EXPECT_THAT(events->Take(), ElementsAre("attributeChange"));
  }
}

TEST_P(NodeKindTest, MeetsVisitorsAsItsExactClass) {
  Watcher watcher;
  std::as_const(*node).Accept(watcher);
  EXPECT_THAT(watcher.met, ElementsAre(GetParam().className));
  Modifier modifier;
  node->Accept(modifier);
  EXPECT_THAT(modifier.met, ElementsAre(GetParam().className));
}

INSTANTIATE_TEST_SUITE_P(Every, NodeKindTest, testing::ValuesIn(kKinds),
                         [](auto const& made) { return std::string(made.param.className); });

TEST(Domains, NeedNoMultiplexer) {
  auto const scenes = New<NSceneDomain>(nullptr, nullptr, nullptr, nullptr);
  auto const geometries = New<NGeometryDomain>(nullptr, nullptr, nullptr);
  EXPECT_TRUE(scenes->CreateNode() && geometries->CreateNode());
}

// The accessors come from the rows of the tables: one of each type, and those written by hand.
TEST(Accessors, ReachTheirAttributeAndNoOther) {
  World world;
  auto const log = world.ListenToAttributes();
  auto const expect = [&log](NNode& node, wchar_t const* name, NVariant const& value) {
    EXPECT_THAT(log->TakeNames(), ElementsAre(name));
    EXPECT_TRUE(node.QueryAttribute(name)->GetValue() == value) << testing::PrintToString(name);
  };
  auto const light = world.lights->CreateNode();
  light->SetType(light::LT_SPOT);
  expect(*light, L"type", L"spot");
  EXPECT_EQ(light->GetType(), light::LT_SPOT);
  light->SetColorG(0.5);
  expect(*light, L"color.g", 0.5);
  EXPECT_EQ(light->GetColorG(), 0.5);
  EXPECT_EQ(light->GetColorR(), 1.0);
  light->SetMakesSelfShadow(false);
  expect(*light, L"makesSelfShadow", false);
  EXPECT_TRUE(light->MakesShadow() && !light->MakesSelfShadow());
  light->SetExtension(light::NET_EMIT_MINUS);
  expect(*light, L"extension", 1);
  EXPECT_EQ(light->GetExtension(), light::NET_EMIT_MINUS);
  light->QueryAttribute(L"falloffAngle")->SetValue(45.0, true);
  expect(*light, L"falloffAngle", 45.0);
  EXPECT_EQ(light->GetFallOffAngle(), 45.0);

  auto const animated = world.animations->CreateNode();
  animated->SetEndFrame(7);
  expect(*animated, L"frame.end", 7);
  EXPECT_EQ(animated->GetEndFrame(), 7);
  auto const projection = world.projections->CreateNode();
  projection->SetRepeatW(3);
  expect(*projection, L"repeat.w", 3.0);

  auto const model = world.items->CreateNode<NSceneGraphModelNode>();
  EXPECT_FALSE(model->IsWired());
  model->SetIsWiredFlag(true);
  expect(*model, L"isWired", true);
  EXPECT_TRUE(model->IsWired());
}

}  // namespace
}  // namespace corvanta::node_kinds
