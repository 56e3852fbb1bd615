#include "tests/scenegraph/graph.h"

namespace corvanta::test {
namespace {

TEST(LocalTransform, ScalesThenTurnsAboutThePivotThenMoves) {
  struct Case {
    char const* name;
    Vec3 scale, pivot, rotation, translation, point, expected;
  };
  for (Case const& c : {
           Case{"scale isn't centred on the pivot",
                {2, 2, 2},
                {1, 0, 0},
                {},
                {},
                {1, 0, 0},
                {2, 0, 0}},
           Case{"turn about the pivot", {1, 1, 1}, {1, 0, 0}, {0, 0, 90}, {}, {2, 0, 0}, {1, 1, 0}},
           Case{"x before y", {1, 1, 1}, {}, {90, 90, 0}, {}, {0, 1, 0}, {1, 0, 0}},
           Case{"move last", {2, 1, 1}, {}, {0, 90, 0}, {5, 6, 7}, {1, 0, 0}, {5, 6, 5}},
       }) {
    EXPECT_TRUE(
        Near(Apply(item::CalcTransformMatrix(c.scale, c.pivot, c.rotation, c.translation), c.point),
             c.expected))
        << c.name;
  }
}

TEST(LocalTransform, FollowsAttributesAndTryTransform) {
  Graph graph;
  Group const group = graph.Make();
  Move(*group, 1, 0, 0);
  EXPECT_EQ(Apply(group->GetTransform(), Vec3()).x, 1.0f);
  group->QueryAttribute(item::AN_TRANSLATION_X)->SetValue(9.0, false);
  EXPECT_EQ(Apply(group->GetTransform(), Vec3()).x, 1.0f) << "a silent write marks nothing";
  group->SetRotationPivotY(1);
  EXPECT_EQ(Apply(group->GetTransform(), Vec3()).x, 9.0f);

  Matrix const m = item::CalcTransformMatrix({2, 3, 4}, {}, {10, 20, 30}, {5, 6, 7});
  Group const other = graph.Make();
  for (wchar_t const* const name :
       {item::AN_TRANSLATION_X, item::AN_ROTATION_Y, item::AN_SCALE_Z}) {
    other->QueryAttribute(name)->SetValue(5, true);  // a long, in place of a double
  }
  other->TryTransform(m);
  item::SetTransform(*group, m);
  group->SetRotationPivotY(0);
  for (Vec3 const& point : {Vec3(1, 2, 3), Vec3(-1, 0, 5)}) {
    EXPECT_TRUE(Near(Apply(group->GetTransform(), point), Apply(m, point)));
    EXPECT_TRUE(Near(Apply(other->GetTransform(), point), Apply(m, point)));
  }
}

TEST(Caches, FollowEveryAttributeThatTheyDependOn) {
  std::set<std::wstring> const matrix{L"translation.x",    L"translation.y",    L"translation.z",
                                      L"rotation.x",       L"rotation.y",       L"rotation.z",
                                      L"scale.x",          L"scale.y",          L"rotation.pivot.x",
                                      L"rotation.pivot.y", L"rotation.pivot.z", L"scale.z"};
  std::set<std::wstring> const box{L"isVisible", L"transform.isAbsolute"};
  std::set<std::wstring> const global{L"interest.x", L"interest.y", L"interest.z",
                                      L"transform.isAbsolute"};
  Graph graph;
  auto const all = graph.Make<item::NSceneGraphCameraNode>();
  for (auto i = all->GetAttributeBegin(); i != all->GetAttributeEnd(); ++i) {
    std::wstring const name = i->GetName();
    Group const parent = graph.Make();
    auto const camera = graph.Make<item::NSceneGraphCameraNode>();
    Model const model = graph.MakeModel({0, 0, 0}, {1, 1, 1});
    ASSERT_TRUE(parent->AddChild(*camera) && camera->AddChild(*model));
    Move(*parent, 1, 2, 3);
    camera->SetRotationX(10);
    camera->SetRotationY(20);
    camera->SetRotationZ(30);
    Matrix const before = camera->GetTransform();
    Box3 const boxBefore = parent->GetBoundingBox(parent->GetTransform(), {});
    auto& attribute = *camera->QueryAttribute(name);
    attribute.SetValue(attribute.GetKind() == core::variant::NVK_BOOL
                           ? core::variant::NVariant(!attribute.GetBool())
                           : core::variant::NVariant(attribute.GetDouble() + 2),
                       true);
    EXPECT_EQ(camera->GetTransform() != before, matrix.count(name) != 0)
        << testing::PrintToString(name);
    Box3 const& boxAfter = parent->GetBoundingBox(parent->GetTransform(), {});
    EXPECT_EQ(boxAfter.min != boxBefore.min || boxAfter.max != boxBefore.max,
              matrix.count(name) + box.count(name) != 0)
        << testing::PrintToString(name);
    EXPECT_EQ(scenegraph::IsSceneGraphTransformAttribute(name),
              matrix.count(name) + global.count(name) != 0)
        << testing::PrintToString(name);
  }
  for (wchar_t const* const name : {L"unit", L"", L"translation"}) {
    EXPECT_FALSE(scenegraph::IsSceneGraphTransformAttribute(name));
  }
  EXPECT_TRUE(scenegraph::IsSceneGraphCoordConversionAttribute(L"coordConversion"));
  EXPECT_FALSE(scenegraph::IsSceneGraphCoordConversionAttribute(L"unit"));
}

struct ReadInside : data::events::attribute_change::NListener {
  std::function<void()> read;

 private:
  void OnAttributeChangeImpl(core::attribute::NAttributeHost&,
                             core::attribute::NAttribute const&) override {
    read();
  }
};

TEST(Caches, AreReadOldInsideTheEventAndMarkedAlsoWhenAListenerThrows) {
  Graph graph;
  Group const parent = graph.Make();
  Model const model = graph.MakeModel({0, 0, 0}, {1, 1, 1});
  parent->AddChild(*model);
  EXPECT_EQ(parent->GetBoundingBox({}, {}).max.x, 1.0f);
  (void)model->GetTransform();
  Pointer<ReadInside> const listener(new ReadInside);
  graph.attributes->AddObserver(*listener);
  float inside = -1;
  listener->read = [&] {
    inside = Apply(model->GetTransform(), Vec3()).x;
    throw 1;
  };
  EXPECT_THROW(model->SetTranslationX(5), int);
  EXPECT_EQ(inside, 0.0f);
  EXPECT_EQ(Apply(model->GetTransform(), Vec3()).x, 5.0f);
  EXPECT_EQ(parent->GetBoundingBox({}, {}).max.x, 6.0f);
}

TEST(Caches, ACopyThatAListenerEditsIsComputedAnew) {
  Graph graph;
  Pointer<ReadInside> const listener(new ReadInside);
  graph.attributes->AddObserver(*listener);
  for (bool const editsSource : {false, true}) {
    Group const source = graph.Make(), target = graph.Make();
    listener->read = [] {};
    Move(*source, 1, 2, 3);
    (void)source->GetTransform();
    bool isEdited = false;
    listener->read = [&] {
      if (isEdited || target->GetTranslationZ() != 3) return;
      isEdited = true;  // the translation is copied
      (editsSource ? source : target)->SetTranslationX(9);
      (void)source->GetTransform();
    };
    source->CopyTo(*target);
    EXPECT_EQ(target->GetTransform()(3, 0), editsSource ? 1.0f : 9.0f);
  }
}

struct AtMeeting : data::events::NEventListener {
  std::vector<std::function<void()>> edits;

 private:
  void OnSceneGraphTreeChange(tree::NSceneGraphTreeHost const&,
                              Pointer<tree::NSceneGraphTreeNode> const&) override {
    if (edits.empty()) return;
    auto const edit = edits.front();
    edits.erase(edits.begin());
    edit();
  }
};

/// Two references meet their tree while a box is computed; what their listeners move is marked.
TEST(Boxes, AMarkThatComesWhileABoxIsComputedStays) {
  Graph graph;
  Group const root = graph.Make(), group = graph.Make();
  Model const model = graph.MakeModel({0, 0, 0}, {1, 1, 1});
  Tree const shown = graph.MakeTree(graph.Make());
  Reference const first = graph.MakeReference(shown), second = graph.MakeReference(shown);
  root->AddChild(*model);
  root->AddChild(*group);
  group->AddChild(*second);
  root->AddChild(*first);
  (void)root->GetBoundingBox({}, {});
  Pointer<AtMeeting> const listener(new AtMeeting);
  graph.events->AddObserver(*listener);
  shown->RemoveObserver(*first);
  first->SetTranslationX(1);
  listener->edits = {[&] {
                       shown->RemoveObserver(*second);
                       second->SetTranslationX(1);
                     },
                     [&] { model->SetTranslationX(9); }};
  (void)root->GetBoundingBox({}, {});
  EXPECT_TRUE(listener->edits.empty());
  EXPECT_EQ(root->GetBoundingBox({}, {}).max.x, 10.0f);
}

TEST(Boxes, HiddenAndAbsoluteChildren) {
  Graph graph;
  Group const root = graph.Make(), arm = graph.Make();
  Model const hidden = graph.MakeModel({0, 0, 0}, {9, 9, 9});
  Model const absolute = graph.MakeModel({0, 0, 0}, {1, 1, 1});
  root->AddChild(*arm);
  arm->AddChild(*hidden);
  arm->AddChild(*absolute);
  Move(*arm, 100, 0, 0);
  Move(*absolute, 0, 5, 0);
  hidden->SetIsVisibleFlag(false);
  absolute->SetTransformIsAbsoluteFlag(true);
  Tree const shown = graph.MakeTree(root);
  shown->SetUnit(2);
  Box3 const box = tree::GetBoundingBox(*shown);
  EXPECT_TRUE(Near(box.min, {0, 10, 0})) << "the arm doesn't act, the tree's unit does";
  EXPECT_TRUE(Near(box.max, {2, 12, 2}));
  Box3 const& cached = root->GetBoundingBox({}, {});
  Matrix far;
  far.SetTranslate({1000, 0, 0});
  EXPECT_EQ(cached, root->GetBoundingBox(far, far)) << "clean, whatever the arguments";
  hidden->SetIsVisibleFlag(true);
  EXPECT_EQ(root->GetBoundingBox({}, {}).max.x, 109.0f);
  EXPECT_EQ(hidden->GetBoundingBox({}, {}).max.x, 9.0f);
}

/// What the box of a hierarchy of groups and models without absolute items must be.
Box3 NaiveBox(item::NSceneGraphItemNode const& of) {
  Box3 box;
  for (auto const& child : of.GetChildren()) {
    if (!child->IsVisible()) continue;
    Box3 childBox = NaiveBox(*child);
    childBox.Transform(child->GetTransform());
    box.ExtendBy(childBox);
  }
  if (auto const* model = dynamic_cast<item::NSceneGraphModelNode const*>(&of)) {
    box.ExtendBy(model->GetBoundingBoxWithoutChildren());
  }
  auto const* reference = dynamic_cast<item::NSceneGraphReferenceNode const*>(&of);
  auto const shown = reference ? reference->GetSceneGraph() : nullptr;
  if (shown && shown->GetRoot()) {
    Box3 rootBox = NaiveBox(*shown->GetRoot());
    rootBox.Transform(shown->GetRoot()->GetTransform() * shown->GetControlTransform());
    box.ExtendBy(rootBox);
  }
  return box;
}

TEST(Boxes, AgainstTheNaiveOnesUnderRandomEdits) {
  unsigned const seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  Graph graph;
  // Two trees; the second is shown twice in the first.
  std::vector<Item> all[2];
  Tree trees[2];
  for (int t = 0; t != 2; ++t) {
    for (int i = 0; i != 40; ++i) {
      Item made = i % 3 == 2 ? Item(graph.MakeModel({-1, -1, 0}, {1, 2, 3})) : Item(graph.Make());
      if (i != 0) all[t][random() % all[t].size()]->AddChild(*made);
      all[t].push_back(made);
    }
    trees[t] = graph.MakeTree(all[t][0]);
  }
  for (int i = 0; i != 2; ++i) {
    Reference const reference = graph.MakeReference(trees[1]);
    all[0][random() % all[0].size()]->AddChild(*reference);
    all[0].push_back(reference);
  }
  for (int step = 0; step != 3000; ++step) {
    auto& items = all[random() % 2];
    Item const& edited = items[random() % items.size()];
    auto const number = static_cast<double>(random() % 100) / 10;
    switch (random() % 8) {
      case 0:
        edited->SetTranslationX(number);
        break;
      case 1:
        edited->SetRotationZ(number * 36);
        break;
      case 2:
        edited->SetScaleY(number / 5 + 0.1);
        break;
      case 3:
        edited->SetIsVisibleFlag(random() % 4 != 0);
        break;
      case 4:
        trees[1]->SetUnit(number + 0.5);
        break;
      case 5:
        trees[1]->SetCoordConversion(random() % 2 ? tree::CCV_ZUP_TO_YUP : L"none");
        break;
      default:
        if (auto const parent = edited->GetParent()) {
          parent->RemoveChild(*edited);
          Item const& target = items[random() % items.size()];
          if (!target->AddChild(*edited)) parent->AddChild(*edited);
        }
    }
    for (Tree const& t : trees) {
      Box3 const box = tree::GetBoundingBox(*t);
      Box3 naive = NaiveBox(*t->GetRoot());
      naive.Transform(t->GetRoot()->GetTransform() * t->GetControlTransform());
      ASSERT_EQ(box.IsEmpty(), naive.IsEmpty()) << "step " << step;
      if (naive.IsEmpty()) continue;
      ASSERT_TRUE(Near(box.min, naive.min, 1e-4f) && Near(box.max, naive.max, 1e-4f))
          << "step " << step;
    }
  }
}

TEST(Boxes, TwoReferencesALevelAreVisitedOnce) {
  Graph graph;
  Group root = graph.Make();
  Model const model = graph.MakeModel({0, 0, 0}, {1, 1, 1});
  root->AddChild(*model);
  Tree shown = graph.MakeTree(root);
  for (int level = 0; level != 26; ++level) {
    Group const above = graph.Make();
    above->AddChild(*graph.MakeReference(shown));
    above->AddChild(*graph.MakeReference(shown));
    shown = graph.MakeTree(above);
  }
  EXPECT_EQ(tree::GetBoundingBox(*shown).max.x, 1.0f);
  model->SetTranslationX(2);
  EXPECT_EQ(tree::GetBoundingBox(*shown).max.x, 3.0f);
}

TEST(Boxes, ATreeThatShowsItselfIsCut) {
  Graph graph;
  Group const root = graph.Make();
  Tree const shown = graph.MakeTree(root);
  Reference const reference = graph.MakeReference(shown);
  root->AddChild(*reference);
  root->AddChild(*graph.MakeModel({0, 0, 0}, {1, 1, 1}));
  EXPECT_EQ(tree::GetBoundingBox(*shown).max.x, 1.0f);
  Move(*reference, 1, 1, 1);
  (void)tree::GetBoundingBox(*shown);
  shown->SetUnit(3);
  EXPECT_EQ(tree::GetBoundingBox(*shown).min.x, 0.0f);
}

struct LateHosts : data::events::NEventListener {
  std::vector<tree::NSceneGraphTreeHost const*> met;

 private:
  void OnSceneGraphTreeChange(tree::NSceneGraphTreeHost const& host,
                              Pointer<tree::NSceneGraphTreeNode> const&) override {
    met.push_back(&host);
  }
};

TEST(Boxes, AreComputedInListOrder) {
  Graph graph;
  Group const root = graph.Make(), innerRoot = graph.Make();
  Model const absolute = graph.MakeModel({0, 0, 0}, {1, 1, 1});
  absolute->SetTransformIsAbsoluteFlag(true);
  innerRoot->AddChild(*absolute);
  Tree const inner = graph.MakeTree(innerRoot), shown = graph.MakeTree(root);
  std::vector<tree::NSceneGraphTreeHost const*> expected;
  std::vector<Tree> late;
  for (double const x : {10, 100, 200}) {
    Group const arm = graph.Make();
    Reference const early = graph.MakeReference(inner);
    Move(*early, x, 0, 0);
    // Nobody holds the tree yet, so that the reference meets it when the box is computed.
    auto* const unheld = new tree::NSceneGraphTreeNode(NNodeID(), nullptr, nullptr);
    NNodeReference<tree::NSceneGraphTreeNode> const ahead(*unheld);
    Reference const meets = graph.Make<item::NSceneGraphReferenceNode>();
    meets->SetSceneGraph(ahead);
    late.emplace_back(unheld);
    root->AddChild(*arm);
    for (Reference const& child : {early, meets}) arm->AddChild(*child);
    expected.push_back(meets.get());
  }
  Pointer<LateHosts> const log(new LateHosts);
  graph.events->AddObserver(*log);
  Box3 const box = tree::GetBoundingBox(*shown);
  EXPECT_TRUE(Near(box.min, {0, 0, 0})) << "the first reference decides the shown tree's own box";
  EXPECT_TRUE(Near(box.max, {191, 1, 1}));
  EXPECT_EQ(log->met, expected);
}

TEST(Boxes, AHundredThousandNestedReferences) {
  Graph graph;
  Item root = graph.MakeModel({0, 0, 0}, {1, 1, 1});
  Tree shown;
  for (int level = 0; level != 100000; ++level) {
    shown = graph.MakeTree(root);
    root = graph.MakeReference(shown);
  }
  shown = graph.MakeTree(root);
  EXPECT_EQ(tree::GetBoundingBox(*shown).max.x, 1.0f);
}

TEST(Boxes, AGeometryMarksItsModelsOnceTheyHaveReadIt) {
  Graph graph;
  Model const model = graph.MakeModel({0, 0, 0}, {1, 1, 1});
  Group const root = graph.Make();
  root->AddChild(*model);
  EXPECT_EQ(root->GetBoundingBox({}, {}).max.x, 1.0f);
  auto const surface = *model->GetGeometryNode()->GetSurfaces().begin();
  std::vector<float> const coords{0, 0, 0, 7, 7, 7, 0, 7, 0};
  surface->Assign(coords, coords, std::vector<unsigned int>{0, 1, 2}, {});
  EXPECT_EQ(root->GetBoundingBox({}, {}).max.x, 7.0f);
  model->SetGeometryNode(NNodeReference<data::domain::geometry::NGeometryNode>());
  EXPECT_TRUE(root->GetBoundingBox({}, {}).IsEmpty());
  EXPECT_TRUE(model->GetBoundingBoxWithoutChildren().IsEmpty());
}

TEST(MaterialUse, IsCountedByModels) {
  Graph graph;
  auto const material = graph.materials->CreateNode(NNodeID());
  Model first = graph.Make<item::NSceneGraphModelNode>();
  Model const second = graph.Make<item::NSceneGraphModelNode>();
  using data::domain::material::IsUsed;
  EXPECT_FALSE(IsUsed(*material));
  first->SetMaterial(material);
  first->SetMaterial(first->GetMaterialRef());
  first->CopyTo(*second);
  EXPECT_EQ(second->GetMaterialNode(), material);
  graph.items->RemoveNode(*first);
  first.reset();
  EXPECT_TRUE(IsUsed(*material));
  second->SetMaterial({});
  EXPECT_FALSE(IsUsed(*material));
  graph.items->RemoveNode(*second);
  second->SetMaterial(material);
  EXPECT_FALSE(second->GetMaterialRef()) << "without a manager nothing is set";
}

}  // namespace
}  // namespace corvanta::test
