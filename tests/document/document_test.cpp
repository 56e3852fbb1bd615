#include "tests/support/world.h"

namespace corvanta {
namespace {

TEST(Document, HasADomainOfEachKindAtItsLocatorThatReportsToItsEvents) {
  World world;
  NDocument& document = world.document;
  std::set<std::wstring> types;
  for (auto const& domain : document) {
    types.insert(domain->GetType());
    NPath const path = NPath(L"/document") / domain->GetType();
    EXPECT_EQ(domain, world.manager.QueryDomain(NLocator(NUri::CreateInternalUri(path))));
  }
  EXPECT_EQ(15u, types.size());

  auto const log = world.Listen(true);
  auto const group = world.Make();
  auto const model = world.Make<NSceneGraphModelNode>();
  auto const light = document.GetLights().CreateNode(L"lamp");
  group->AddChild(*model);
  light->SetColorR(0.5);
  EXPECT_THAT(log->Take(), ElementsAre("addChild", "attributeChange"));

  std::vector<Item> items;
  for (NSceneGraphItemNode& item : document.GetItems()) items.emplace_back(&item);
  EXPECT_THAT(items, ElementsAre(group, model));
  model->SetName(L"x");
  light->SetName(L"x");
  EXPECT_THAT(document.QueryNodes(L"x"), ElementsAre(model, light));
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
  Pointer<NEventMultiplexer> const events(&document->GetEvents());
  Pointer<NLightDomain> const lights(&document->GetLights());
  auto const log = New<support::EventLog>(true);
  events->AddObserver(*log);
  document.reset();
  EXPECT_EQ(nullptr, model->GetDomain());
  EXPECT_EQ(nullptr, lights->GetManager());
  model->SetTranslationX(1.0);
  ASSERT_NE(nullptr, lights->CreateNode());
  EXPECT_THAT(log->Take(), ElementsAre("attributeChange"));
}

TEST(Document, MayEndInsideAnEventOfItsOwn) {
  for (bool const byChild : {false, true}) {
    auto document = std::make_unique<NDocument>();
    auto& items = document->GetItems();
    NSceneGraphItemNode& group = *items.CreateNode<NSceneGraphGroupNode>();
    NSceneGraphItemNode& model = *items.CreateNode<NSceneGraphModelNode>();
    auto const log = New<support::EventLog>(true);
    log->react = [&](NSignal const&) { document.reset(); };
    document->GetEvents().AddObserver(*log);
    byChild ? void(group.AddChild(model)) : group.SetTranslationX(2.0);
    EXPECT_EQ(nullptr, document);
  }
}

}  // namespace
}  // namespace corvanta
