#include <string_view>

#include "tests/node_kinds/node_kind.h"

namespace corvanta::node_kinds {

using data::domain::NNode;
using testing::UnorderedElementsAreArray;

void ExpectDefaults(NAttributeHost const& host, std::vector<Row> const& rows) {
  std::size_t index = 0;
  for (auto i = host.GetAttributeBegin(); i != host.GetAttributeEnd(); ++i, ++index) {
    ASSERT_LT(index, rows.size()) << "not listed: " << testing::PrintToString(i->GetName());
    Row const& row = rows[index];
    EXPECT_EQ(i->GetName(), row.name);
    EXPECT_EQ(i->GetKind(), row.value.GetKind()) << testing::PrintToString(row.name);
    EXPECT_TRUE(i->GetValue() == row.value) << testing::PrintToString(row.name);
    EXPECT_EQ(i->GetFlag(), row.flag) << testing::PrintToString(row.name);
    if (row.get) {
      EXPECT_TRUE(row.get(host) == row.value) << testing::PrintToString(row.name);
    }
  }
  EXPECT_EQ(index, rows.size());
}

NVariant MakeProbe(Row const& row, std::size_t index) {
  switch (row.value.GetKind()) {
    case core::variant::NVK_DOUBLE:
      return row.value.GetDouble() + 0.375 + static_cast<double>(index);
    case core::variant::NVK_LONG:
      return row.value.GetLong() + 1 + static_cast<long>(index);
    case core::variant::NVK_BOOL:
      return !row.value.GetBool();
    case core::variant::NVK_STRING:
      return L"text " + std::to_wstring(index);
    default:
      return NVariant();
  }
}

namespace {

class Recorder final : public data::events::attribute_change::NListener {
 public:
  std::vector<std::wstring> names;
  NAttributeHost* host = nullptr;

  std::vector<std::wstring> Take() { return std::exchange(names, {}); }

 private:
  void OnAttributeChangeImpl(NAttributeHost& changed,
                             core::attribute::NAttribute const& attribute) override {
    host = &changed;
    names.push_back(attribute.GetName());
  }
};

// Every kind that a visitor can meet.
#define CORVANTA_EVERY_KIND(KIND)                  \
  KIND(animation, NAnimationNode)                  \
  KIND(camera, NCameraNode)                        \
  KIND(environment, NEnvironmentNode)              \
  KIND(geometry, NGeometryNode)                    \
  KIND(image, NImageNode)                          \
  KIND(light, NLightNode)                          \
  KIND(light_env, NLightEnvNode)                   \
  KIND(material, NMaterialNode)                    \
  KIND(movie, NMovieNode)                          \
  KIND(projection, NProjectionNode)                \
  KIND(scene, NSceneNode)                          \
  KIND(scenegraph::item, NSceneGraphCameraNode)    \
  KIND(scenegraph::item, NSceneGraphGroupNode)     \
  KIND(scenegraph::item, NSceneGraphLightNode)     \
  KIND(scenegraph::item, NSceneGraphModelNode)     \
  KIND(scenegraph::item, NSceneGraphReferenceNode) \
  KIND(scenegraph::tree, NSceneGraphTreeNode)      \
  KIND(sound, NSoundNode)                          \
  KIND(texture, NTextureNode)

class Watcher final : public data::domain::NNodeWatcher {
 public:
  virtual ~Watcher() = default;
  std::vector<std::string> met;

 private:
#define CORVANTA_MEET(SPACE, CLASS) \
  void VisitImpl(data::domain::SPACE::CLASS const&) override { met.push_back(#CLASS); }
  CORVANTA_EVERY_KIND(CORVANTA_MEET)
#undef CORVANTA_MEET
};

class Modifier final : public data::domain::NNodeModifier {
 public:
  virtual ~Modifier() = default;
  std::vector<std::string> met;

 private:
#define CORVANTA_MEET(SPACE, CLASS) \
  void VisitImpl(data::domain::SPACE::CLASS&) override { met.push_back(#CLASS); }
  CORVANTA_EVERY_KIND(CORVANTA_MEET)
#undef CORVANTA_MEET
};

struct World {
  explicit World(NodeKind const& kind) : domain(kind.makeDomain(multiplexer.get())) {
    multiplexer->AddObserver(*recorder);
    node = kind.makeNode(*domain);
  }

  Pointer<AttributeMultiplexer> const multiplexer{new AttributeMultiplexer};
  Pointer<Recorder> const recorder{new Recorder};
  Pointer<core::domain::NDomainBase> const domain;
  Pointer<NNode> node;
};

TEST_P(NodeKindTest, StartsAsListed) {
  World const world(GetParam());
  EXPECT_EQ(world.domain->GetType(), GetParam().type);
  EXPECT_STREQ(world.domain->GetType(), GetParam().typeText);
  EXPECT_EQ(data::domain::DomainTypeFromString(GetParam().typeText), GetParam().type);
  EXPECT_EQ(world.domain->GetName(), GetParam().domainName);

  ASSERT_TRUE(world.node);
  EXPECT_EQ(world.node->GetName(), GetParam().nodeName);
  EXPECT_EQ(world.node->GetDomain(), world.domain.get());
  EXPECT_FALSE(world.node->GetResource());
  ExpectDefaults(*world.node, GetParam().rows);
  EXPECT_THAT(world.recorder->names, IsEmpty()) << "a default was told";
}

TEST_P(NodeKindTest, AccessorsReachTheirAttributeAndNoOther) {
  World const world(GetParam());
  std::vector<Row> rows = GetParam().rows;
  for (std::size_t i = 0; i != rows.size(); ++i) {
    Row& row = rows[i];
    NVariant const probe = MakeProbe(row, i);
    if (row.set) {
      row.set(*world.node, probe);
    } else {
      world.node->QueryAttribute(row.name)->SetValue(probe, true);
    }
    EXPECT_THAT(world.recorder->Take(), ElementsAre(row.name));
    EXPECT_EQ(world.recorder->host, world.node.get());
    row.value = probe;
  }
  ExpectDefaults(*world.node, rows);
}

TEST_P(NodeKindTest, CopiesItsNameAndItsValues) {
  ASSERT_EQ(static_cast<bool>(GetParam().copy), GetParam().isCopied);
  if (!GetParam().isCopied) return;
  World const world(GetParam());
  auto const target = GetParam().makeNode(*world.domain);
  world.node->SetName(L"copied");
  std::vector<Row> rows = GetParam().rows;
  std::vector<std::wstring> told;
  for (std::size_t i = 0; i != rows.size(); ++i) {
    rows[i].value = MakeProbe(rows[i], i);
    world.node->QueryAttribute(rows[i].name)->SetValue(rows[i].value, false);
    if (rows[i].value.GetKind() != core::variant::NVK_NONE) told.push_back(rows[i].name);
  }
  core::node::NNodeID const id = target->GetID();
  GetParam().copy(*world.node, *target);
  ExpectDefaults(*target, rows);
  EXPECT_EQ(world.recorder->names, told);
  GetParam().copy(*world.node, *target);        // which counts no name up
  EXPECT_EQ(target->GetName(), L"copied (2)");  // the source bears the name in the same domain
  EXPECT_TRUE(target->GetID() == id);
  EXPECT_EQ(target->GetDomain(), world.domain.get());
}

TEST_P(NodeKindTest, MeetsVisitorsAsItsExactClass) {
  World const world(GetParam());
  Watcher watcher;
  static_cast<NNode const&>(*world.node).Accept(watcher);
  EXPECT_THAT(watcher.met, ElementsAre(GetParam().className));
  Modifier modifier;
  world.node->Accept(modifier);
  EXPECT_THAT(modifier.met, ElementsAre(GetParam().className));
}

TEST(NodeKinds, AreAllListed) {
  std::set<std::string> listed;
  testing::UnitTest const& tests = *testing::UnitTest::GetInstance();
  for (int i = 0; i != tests.total_test_suite_count(); ++i) {
    testing::TestSuite const& suite = *tests.GetTestSuite(i);
    if (!std::string_view(suite.name()).ends_with("/NodeKindTest")) continue;
    for (int j = 0; j != suite.total_test_count(); ++j) {
      std::string const name = suite.GetTestInfo(j)->name();
      listed.insert(name.substr(name.find('/') + 1));
    }
  }
#define CORVANTA_NAME(SPACE, CLASS) #CLASS,
  EXPECT_THAT(listed, UnorderedElementsAreArray({CORVANTA_EVERY_KIND(CORVANTA_NAME)}));
#undef CORVANTA_NAME
}

}  // namespace
}  // namespace corvanta::node_kinds
