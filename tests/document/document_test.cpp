#include "corvanta/names.h"
#include "tests/support/test.h"

namespace corvanta {
namespace {

using data::domain::scenegraph::item::NSceneGraphItemNode;

// Calls a function at each change of an attribute and at each child.
struct Listener : data::events::NEventListener {
  explicit Listener(std::function<void()> call) : m_call(std::move(call)) {}
  void OnAttributeChange(core::attribute::NAttributeHost&,
                         core::attribute::NAttribute const&) override {
    m_call();
  }
  void OnAddChild(NSceneGraphItemNode const&, NSceneGraphItemNode const&) override { m_call(); }
  std::function<void()> const m_call;
};

TEST(Document, HasADomainOfEachKindAtItsLocatorThatReportsToItsEvents) {
  NDocument document;
  std::set<std::wstring> types;
  for (auto const& domain : document) {
    types.insert(domain->GetType());
    core::uri::NPath const path = core::uri::NPath(L"/document") / domain->GetType();
    EXPECT_EQ(domain, document.GetManager().QueryDomain(
                          core::locator::NLocator(core::uri::NUri::CreateInternalUri(path))));
  }
  EXPECT_EQ(15u, types.size());

  int calls = 0;
  Pointer<Listener> const listener(new Listener([&] { ++calls; }));
  document.GetEvents().AddObserver(*listener);
  auto const group = document.GetItems().CreateNode<NSceneGraphGroupNode>();
  auto const model = document.GetItems().CreateNode<NSceneGraphModelNode>();
  auto const light = document.GetLights().CreateNode(L"lamp");
  group->AddChild(*model);
  light->SetColorR(0.5);
  EXPECT_EQ(2, calls);

  std::vector<NSceneGraphItemNode*> items;
  for (NSceneGraphItemNode& item : document.GetItems()) items.push_back(&item);
  EXPECT_EQ((std::vector<NSceneGraphItemNode*>{group.get(), model.get()}), items);
  model->SetName(L"x");
  light->SetName(L"x");
  EXPECT_EQ((NDocument::Nodes{model, light}), document.QueryNodes(L"x"));
  EXPECT_TRUE(document.QueryNodes(L"y").empty());
}

TEST(Document, EndsBeforeItsNodesDomainsAndEvents) {
  auto document = std::make_unique<NDocument>();
  ASSERT_TRUE(data::internal::Initialize(document->GetManager(), document->GetEvents()));
  auto const group = document->GetItems().CreateNode<NSceneGraphGroupNode>();
  auto const model = document->GetItems().CreateNode<NSceneGraphModelNode>();
  auto const material = document->GetMaterials().CreateNode();
  group->AddChild(*model);
  model->SetMaterial(*material);
  int calls = 0;
  Pointer<Listener> const listener(new Listener([&] { ++calls; }));
  Pointer<NEventMultiplexer> const events(&document->GetEvents());
  Pointer<data::domain::light::NLightDomain> const lights(&document->GetLights());
  events->AddObserver(*listener);
  document.reset();
  EXPECT_EQ(nullptr, model->GetDomain());
  EXPECT_EQ(nullptr, lights->GetManager());
  model->SetTranslationX(1.0);
  ASSERT_NE(nullptr, lights->CreateNode());
  EXPECT_EQ(1, calls);
}

TEST(Document, MayEndInsideAnEventOfItsOwn) {
  for (bool const byChild : {false, true}) {
    auto document = std::make_unique<NDocument>();
    auto& items = document->GetItems();
    NSceneGraphItemNode& group = *items.CreateNode<NSceneGraphGroupNode>();
    NSceneGraphItemNode& model = *items.CreateNode<NSceneGraphModelNode>();
    Pointer<Listener> const listener(new Listener([&] { document.reset(); }));
    document->GetEvents().AddObserver(*listener);
    if (byChild) {
      group.AddChild(model);
    } else {
      group.SetTranslationX(2.0);
    }
    EXPECT_EQ(nullptr, document);
  }
}

}  // namespace
}  // namespace corvanta
