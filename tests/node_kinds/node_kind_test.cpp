#include <ostream>

#include "tests/support/world.h"

// What every kind of node has in common. The attributes themselves, their defaults and accessors
// are held by docs/attributes.md, which tests/attribute_page compares with live nodes.
namespace corvanta::node_kinds {
namespace {

using namespace data::domain;
using core::attribute::NAttribute;
using core::variant::NVariant;
using data::document::NDocument;
using testing::ElementsAreArray;

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

template <class Node, class Domain>
NodeKind Kind(char const* className, wchar_t const* type, wchar_t const* typeText,
              wchar_t const* domainName, wchar_t const* nodeName, bool isCopied,
              Domain& (NDocument::*domain)() const noexcept) {
  NodeKind kind{className, type, typeText, domainName, nodeName, isCopied, {}, {}};
  kind.make = [domain](NDocument& document) -> Pointer<NNode> {
    return (document.*domain)().template CreateNode<Node>();
  };
  if constexpr (requires(Node const& source, Node& target) { source.CopyTo(target); }) {
    kind.copy = [](NNode const& source, NNode& target) {
      dynamic_cast<Node const&>(source).CopyTo(dynamic_cast<Node&>(target));
    };
  }
  return kind;
}

template <class Node>
NodeKind Item(char const* className, wchar_t const* nodeName, bool isCopied) {
  return Kind<Node>(className, DT_SCENEGRAPH_ITEM, L"scenegraphitem", L"scene graph item", nodeName,
                    isCopied, &NDocument::GetItems);
}

using D = NDocument;
using namespace scenegraph::item;
NodeKind const kKinds[] = {
    // clang-format off
    Kind<animation::NAnimationNode>("NAnimationNode", DT_ANIMATION, L"animation", L"animation", L"animation", true, &D::GetAnimations),
    Kind<camera::NCameraNode>("NCameraNode", DT_CAMERA, L"camera", L"camera", L"camera", true, &D::GetCameras),
    Kind<environment::NEnvironmentNode>("NEnvironmentNode", DT_ENVIRONMENT, L"environment", L"environment", L"environment", true, &D::GetEnvironments),
    Kind<geometry::NGeometryNode>("NGeometryNode", DT_GEOMETRY, L"geometry", L"geometry", L"geometry", true, &D::GetGeometries),
    Kind<image::NImageNode>("NImageNode", DT_IMAGE, L"image", L"image", L"image", true, &D::GetImages),
    Kind<light::NLightNode>("NLightNode", DT_LIGHT, L"light", L"light", L"light", true, &D::GetLights),
    Kind<light_env::NLightEnvNode>("NLightEnvNode", DT_LIGHT_ENV, L"lightenvironment", L"light environment", L"light environment", true, &D::GetLightEnvs),
    Kind<material::NMaterialNode>("NMaterialNode", DT_MATERIAL, L"material", L"material", L"material", true, &D::GetMaterials),
    Kind<movie::NMovieNode>("NMovieNode", DT_MOVIE, L"movie", L"movie", L"movie", false, &D::GetMovies),
    Kind<projection::NProjectionNode>("NProjectionNode", DT_PROJECTION, L"projection", L"projection", L"projection", false, &D::GetProjections),
    Kind<scene::NSceneNode>("NSceneNode", DT_SCENE, L"scene", L"scene", L"scene", false, &D::GetScenes),
    Kind<scenegraph::tree::NSceneGraphTreeNode>("NSceneGraphTreeNode", DT_SCENEGRAPH_TREE, L"scenegraphtree", L"scene graph tree", L"scene graph tree", true, &D::GetTrees),
    Kind<sound::NSoundNode>("NSoundNode", DT_SOUND, L"sound", L"sound", L"sound", false, &D::GetSounds),
    Kind<texture::NTextureNode>("NTextureNode", DT_TEXTURE, L"texture", L"texture", L"texture", true, &D::GetTextures),
    Item<NSceneGraphCameraNode>("NSceneGraphCameraNode", L"camera", false),
    Item<NSceneGraphGroupNode>("NSceneGraphGroupNode", L"group", true),
    Item<NSceneGraphLightNode>("NSceneGraphLightNode", L"light", false),
    Item<NSceneGraphModelNode>("NSceneGraphModelNode", L"model", true),
    Item<NSceneGraphReferenceNode>("NSceneGraphReferenceNode", L"reference", false),
    // clang-format on
};

// Every kind that a visitor can meet.
#define CORVANTA_EVERY_KIND(KIND)               \
  KIND(animation, NAnimationNode)               \
  KIND(camera, NCameraNode)                     \
  KIND(environment, NEnvironmentNode)           \
  KIND(geometry, NGeometryNode)                 \
  KIND(image, NImageNode)                       \
  KIND(light, NLightNode)                       \
  KIND(light_env, NLightEnvNode)                \
  KIND(material, NMaterialNode)                 \
  KIND(movie, NMovieNode)                       \
  KIND(projection, NProjectionNode)             \
  KIND(scene, NSceneNode)                       \
  KIND(scenegraph::tree, NSceneGraphTreeNode)   \
  KIND(sound, NSoundNode)                       \
  KIND(texture, NTextureNode)                   \
  KIND(scenegraph::item, NSceneGraphCameraNode) \
  KIND(scenegraph::item, NSceneGraphGroupNode)  \
  KIND(scenegraph::item, NSceneGraphLightNode)  \
  KIND(scenegraph::item, NSceneGraphModelNode)  \
  KIND(scenegraph::item, NSceneGraphReferenceNode)
#define CORVANTA_MEET_CONST(SPACE, CLASS) \
  void VisitImpl(data::domain::SPACE::CLASS const&) override { met.push_back(#CLASS); }
#define CORVANTA_MEET(SPACE, CLASS) \
  void VisitImpl(data::domain::SPACE::CLASS&) override { met.push_back(#CLASS); }

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
  NodeKindTest() {
    world.attributes->AddObserver(*log);
    node = GetParam().make(world.document);
  }

  support::World world;
  Pointer<support::AttributeLog> const log{new support::AttributeLog};
  Pointer<NNode> node;
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
  core::node::NNodeID const id = target->GetID();
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

TEST(NodeKinds, AreAllListed) {
  std::vector<std::string> listed;
  for (NodeKind const& kind : kKinds) listed.emplace_back(kind.className);
#define CORVANTA_NAME(SPACE, CLASS) #CLASS,
  EXPECT_THAT(listed, ElementsAreArray({CORVANTA_EVERY_KIND(CORVANTA_NAME)}));
#undef CORVANTA_NAME
}

TEST(Domains, NeedNoMultiplexer) {
  Pointer<scene::NSceneDomain> const scenes(
      new scene::NSceneDomain(nullptr, nullptr, nullptr, nullptr));
  Pointer<geometry::NGeometryDomain> const geometries(
      new geometry::NGeometryDomain(nullptr, nullptr, nullptr));
  EXPECT_TRUE(scenes->CreateNode() && geometries->CreateNode());
}

// The accessors come from the rows of the tables: one of each type, and those written by hand.
TEST(Accessors, ReachTheirAttributeAndNoOther) {
  support::World world;
  Pointer<support::AttributeLog> const log(new support::AttributeLog);
  world.attributes->AddObserver(*log);
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
