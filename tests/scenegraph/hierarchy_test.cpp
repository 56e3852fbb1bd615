#include "tests/support/world.h"

namespace corvanta::test {
namespace {

using LocalTransform = WorldTest;
using Caches = WorldTest;
using Boxes = WorldTest;
using MaterialUse = WorldTest;

TEST_F(LocalTransform, ScalesThenTurnsAboutThePivotThenMoves) {
  struct Case {
    char const* name;
    Vec3 scale, pivot, rotation, translation, point, expected;
  };
  for (Case const& c : {
           Case{"scale about the origin", {2, 2, 2}, {1, 0, 0}, {}, {}, {1, 0, 0}, {2, 0, 0}},
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

TEST_F(LocalTransform, FollowsAttributesAndTryTransform) {
  Group const group = Make();
  Move(*group, 1, 0, 0);
  EXPECT_EQ(Apply(group->GetTransform(), Vec3()).x, 1.0f);
  group->QueryAttribute(item::AN_TRANSLATION_X)->SetValue(9.0, false);
  EXPECT_EQ(Apply(group->GetTransform(), Vec3()).x, 1.0f) << "a silent write marks nothing";
  group->SetRotationPivotY(1);
  EXPECT_EQ(Apply(group->GetTransform(), Vec3()).x, 9.0f);

  Matrix const m = item::CalcTransformMatrix({2, 3, 4}, {}, {10, 20, 30}, {5, 6, 7});
  Group const other = Make();
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

TEST_F(Caches, FollowEveryAttributeThatTheyDependOn) {
  std::set<std::wstring> matrix;
  for (std::wstring const group : {L"translation.", L"rotation.", L"scale.", L"rotation.pivot."}) {
    for (wchar_t const axis : {L'x', L'y', L'z'}) matrix.insert(group + axis);
  }
  std::set<std::wstring> const box{L"isVisible", L"transform.isAbsolute"};
  std::set<std::wstring> const global{L"interest.x", L"interest.y", L"interest.z",
                                      L"transform.isAbsolute"};
  auto const all = Make<NSceneGraphCameraNode>();
  for (auto i = all->GetAttributeBegin(); i != all->GetAttributeEnd(); ++i) {
    std::wstring const name = i->GetName();
    Group const parent = Make();
    auto const camera = Make<NSceneGraphCameraNode>();
    Model const model = MakeModel();
    ASSERT_TRUE(parent->AddChild(*camera) && camera->AddChild(*model));
    Move(*parent, 1, 2, 3);
    camera->SetRotationX(10);
    camera->SetRotationY(20);
    camera->SetRotationZ(30);
    Matrix const before = camera->GetTransform();
    Box3 const boxBefore = parent->GetBoundingBox(parent->GetTransform(), {});
    auto& attribute = *camera->QueryAttribute(name);
    attribute.SetValue(attribute.GetKind() == core::variant::NVK_BOOL
                           ? NVariant(!attribute.GetBool())
                           : NVariant(attribute.GetDouble() + 2),
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

TEST_F(Caches, AreReadOldInsideTheEventAndMarkedAlsoWhenAListenerThrows) {
  Group const parent = Make();
  Model const model = MakeModel();
  parent->AddChild(*model);
  EXPECT_EQ(parent->GetBoundingBox({}, {}).max.x, 1.0f);
  (void)model->GetTransform();
  auto const log = ListenToAttributes();
  float inside = -1;
  log->react = [&](NAttribute const&) {
    inside = Apply(model->GetTransform(), Vec3()).x;
    throw 1;
  };
  EXPECT_THROW(model->SetTranslationX(5), int);
  EXPECT_EQ(inside, 0.0f);
  EXPECT_EQ(Apply(model->GetTransform(), Vec3()).x, 5.0f);
  EXPECT_EQ(parent->GetBoundingBox({}, {}).max.x, 6.0f);
}

TEST_F(Caches, ACopyThatAListenerEditsIsComputedAnew) {
  auto const log = ListenToAttributes();
  for (bool const editsSource : {false, true}) {
    Group const source = Make(), target = Make();
    log->react = nullptr;
    Move(*source, 1, 2, 3);
    (void)source->GetTransform();
    bool isEdited = false;
    log->react = [&](NAttribute const&) {
      if (isEdited || target->GetTranslationZ() != 3) return;
      isEdited = true;  // the translation is copied
      (editsSource ? source : target)->SetTranslationX(9);
      (void)source->GetTransform();
    };
    source->CopyTo(*target);
    EXPECT_EQ(target->GetTransform()(3, 0), editsSource ? 1.0f : 9.0f);
  }
}

/// Two references meet their tree while a box is computed; what their listeners move is marked.
TEST_F(Boxes, AMarkThatComesWhileABoxIsComputedStays) {
  Group const root = Make(), group = Make();
  Model const model = MakeModel();
  Tree const shown = MakeTree(Make());
  Reference const first = MakeReference(shown), second = MakeReference(shown);
  root->AddChild(*model);
  root->AddChild(*group);
  group->AddChild(*second);
  root->AddChild(*first);
  (void)root->GetBoundingBox({}, {});
  shown->RemoveObserver(*first);
  first->SetTranslationX(1);
  auto const log = Listen();
  log->react = [&](NSignal const& signal) {
    if (signal.kind != data::events::NSK_SCENE_GRAPH_TREE_CHANGE) return;
    if (signal.node != first.get()) return model->SetTranslationX(9);
    shown->RemoveObserver(*second);
    second->SetTranslationX(1);
  };
  (void)root->GetBoundingBox({}, {});
  EXPECT_EQ(model->GetTranslationX(), 9);
  EXPECT_EQ(root->GetBoundingBox({}, {}).max.x, 10.0f);
}

TEST_F(Boxes, HiddenAndAbsoluteChildren) {
  Group const root = Make(), arm = Make();
  Model const hidden = MakeModel({0, 0, 0}, {9, 9, 9}), absolute = MakeModel();
  root->AddChild(*arm);
  arm->AddChild(*hidden);
  arm->AddChild(*absolute);
  Move(*arm, 100, 0, 0);
  Move(*absolute, 0, 5, 0);
  hidden->SetIsVisibleFlag(false);
  absolute->SetTransformIsAbsoluteFlag(true);
  Tree const shown = MakeTree(root);
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
Box3 NaiveBox(NSceneGraphItemNode const& of) {
  Box3 box;
  for (auto const& child : of.GetChildren()) {
    if (!child->IsVisible()) continue;
    Box3 childBox = NaiveBox(*child);
    childBox.Transform(child->GetTransform());
    box.ExtendBy(childBox);
  }
  if (auto const* model = dynamic_cast<NSceneGraphModelNode const*>(&of)) {
    box.ExtendBy(model->GetBoundingBoxWithoutChildren());
  }
  auto const* reference = dynamic_cast<NSceneGraphReferenceNode const*>(&of);
  auto const shown = reference ? reference->GetSceneGraph() : nullptr;
  if (shown && shown->GetRoot()) {
    Box3 rootBox = NaiveBox(*shown->GetRoot());
    rootBox.Transform(shown->GetRoot()->GetTransform() * shown->GetControlTransform());
    box.ExtendBy(rootBox);
  }
  return box;
}

TEST_F(Boxes, AgainstTheNaiveOnesUnderRandomEdits) {
  Random random;
  // Two trees; the second is shown twice in the first.
  std::vector<Item> all[2];
  Tree shown[2];
  for (int t = 0; t != 2; ++t) {
    for (int i = 0; i != 40; ++i) {
      Item made = i % 3 == 2 ? Item(MakeModel({-1, -1, 0}, {1, 2, 3})) : Item(Make());
      if (i != 0) all[t][random() % all[t].size()]->AddChild(*made);
      all[t].push_back(made);
    }
    shown[t] = MakeTree(all[t][0]);
  }
  for (int i = 0; i != 2; ++i) {
    Reference const reference = MakeReference(shown[1]);
    all[0][random() % all[0].size()]->AddChild(*reference);
    all[0].push_back(reference);
  }
  for (int step = 0; step != 3000; ++step) {
    auto& among = all[random() % 2];
    Item const& edited = among[random() % among.size()];
    auto const number = static_cast<double>(random() % 100) / 10;
    std::function<void()> const edits[] = {
        [&] { edited->SetTranslationX(number); },
        [&] { edited->SetRotationZ(number * 36); },
        [&] { edited->SetScaleY(number / 5 + 0.1); },
        [&] { edited->SetIsVisibleFlag(random() % 4 != 0); },
        [&] { shown[1]->SetUnit(number + 0.5); },
        [&] { shown[1]->SetCoordConversion(random() % 2 ? tree::CCV_ZUP_TO_YUP : L"none"); },
        [&] {
          auto const parent = edited->GetParent();
          if (!parent) return;
          parent->RemoveChild(*edited);
          Item const& target = among[random() % among.size()];
          if (!target->AddChild(*edited)) parent->AddChild(*edited);
        }};
    edits[random() % std::size(edits)]();
    for (Tree const& t : shown) {
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

TEST_F(Boxes, TwoReferencesALevelAreVisitedOnce) {
  Group root = Make();
  Model const model = MakeModel();
  root->AddChild(*model);
  Tree shown = MakeTree(root);
  for (int level = 0; level != 26; ++level) {
    Group const above = Make();
    above->AddChild(*MakeReference(shown));
    above->AddChild(*MakeReference(shown));
    shown = MakeTree(above);
  }
  EXPECT_EQ(tree::GetBoundingBox(*shown).max.x, 1.0f);
  model->SetTranslationX(2);
  EXPECT_EQ(tree::GetBoundingBox(*shown).max.x, 3.0f);
}

TEST_F(Boxes, ATreeThatShowsItselfIsCut) {
  Group const root = Make();
  Tree const shown = MakeTree(root);
  Reference const reference = MakeReference(shown);
  root->AddChild(*reference);
  root->AddChild(*MakeModel());
  EXPECT_EQ(tree::GetBoundingBox(*shown).max.x, 1.0f);
  Move(*reference, 1, 1, 1);
  (void)tree::GetBoundingBox(*shown);
  shown->SetUnit(3);
  EXPECT_EQ(tree::GetBoundingBox(*shown).min.x, 0.0f);
}

TEST_F(Boxes, AreComputedInListOrder) {
  Group const root = Make(), innerRoot = Make();
  Model const absolute = MakeModel();
  absolute->SetTransformIsAbsoluteFlag(true);
  innerRoot->AddChild(*absolute);
  Tree const inner = MakeTree(innerRoot), shown = MakeTree(root);
  std::vector<core::node::NNode const*> expected, met;
  std::vector<Tree> late;
  for (double const x : {10, 100, 200}) {
    Group const arm = Make();
    Reference const early = MakeReference(inner);
    Move(*early, x, 0, 0);
    // Nobody holds the tree yet, so that the reference meets it when the box is computed.
    auto* const unheld = new NSceneGraphTreeNode(NNodeID(), nullptr, nullptr);
    NNodeReference<NSceneGraphTreeNode> const ahead(*unheld);
    Reference const meets = Make<NSceneGraphReferenceNode>();
    meets->SetSceneGraph(ahead);
    late.emplace_back(unheld);
    root->AddChild(*arm);
    for (Reference const& child : {early, meets}) arm->AddChild(*child);
    expected.push_back(meets.get());
  }
  auto const log = Listen();
  log->react = [&](NSignal const& signal) {
    if (signal.kind == data::events::NSK_SCENE_GRAPH_TREE_CHANGE) met.push_back(signal.node);
  };
  Box3 const box = tree::GetBoundingBox(*shown);
  EXPECT_TRUE(Near(box.min, {0, 0, 0})) << "the first reference decides the shown tree's own box";
  EXPECT_TRUE(Near(box.max, {191, 1, 1}));
  EXPECT_EQ(met, expected);
}

TEST_F(Boxes, AHundredThousandNestedReferences) {
  Item root = MakeModel();
  Tree shown;
  for (int level = 0; level != 100000; ++level) {
    shown = MakeTree(root);
    root = MakeReference(shown);
  }
  shown = MakeTree(root);
  EXPECT_EQ(tree::GetBoundingBox(*shown).max.x, 1.0f);
}

TEST_F(Boxes, AGeometryMarksItsModelsOnceTheyHaveReadIt) {
  Model const model = MakeModel();
  Group const root = Make();
  root->AddChild(*model);
  EXPECT_EQ(root->GetBoundingBox({}, {}).max.x, 1.0f);
  auto const surface = *model->GetGeometryNode()->GetSurfaces().begin();
  std::vector<float> const coords{0, 0, 0, 7, 7, 7, 0, 7, 0};
  surface->Assign(coords, coords, std::vector<unsigned int>{0, 1, 2}, {});
  EXPECT_EQ(root->GetBoundingBox({}, {}).max.x, 7.0f);
  model->SetGeometryNode(NNodeReference<NGeometryNode>());
  EXPECT_TRUE(root->GetBoundingBox({}, {}).IsEmpty());
  EXPECT_TRUE(model->GetBoundingBoxWithoutChildren().IsEmpty());
}

TEST_F(MaterialUse, IsCountedByModels) {
  auto const material = materials->CreateNode();
  Model first = Make<NSceneGraphModelNode>();
  Model const second = Make<NSceneGraphModelNode>();
  using data::domain::material::IsUsed;
  EXPECT_FALSE(IsUsed(*material));
  first->SetMaterial(material);
  first->SetMaterial(first->GetMaterialRef());
  first->CopyTo(*second);
  EXPECT_EQ(second->GetMaterialNode(), material);
  items->RemoveNode(*first);
  first.reset();
  EXPECT_TRUE(IsUsed(*material));
  second->SetMaterial({});
  EXPECT_FALSE(IsUsed(*material));
  items->RemoveNode(*second);
  second->SetMaterial(material);
  EXPECT_FALSE(second->GetMaterialRef()) << "without a manager nothing is set";
}

using Hierarchy = WorldTest;

/// Records, and looks at the child's parent; what `onAdd` holds is called once.
struct HierarchyLog {
  explicit HierarchyLog(World const& world) : log(world.Listen()) {
    log->react = [this](NSignal const& signal) {
      bool const isAdded = signal.kind == data::events::NSK_ADD_CHILD;
      if (!isAdded && signal.kind != data::events::NSK_REMOVE_CHILD) return;
      auto const& child = dynamic_cast<NSceneGraphItemNode const&>(*signal.other);
      EXPECT_EQ(child.GetParent().get(), isAdded ? signal.node : nullptr);
      if (auto const once = isAdded ? std::exchange(onAdd, nullptr) : nullptr) once();
    };
  }

  std::function<void()> onAdd;
  Pointer<support::EventLog> const log;
};

TEST_F(Hierarchy, RefusalsChangeNothingAndRaiseNothing) {
  World other;
  Group const parent = Make(), child = Make(), elsewhere = Make();
  ASSERT_TRUE(parent->AddChild(*child));
  HierarchyLog log(*this);

  EXPECT_FALSE(parent->AddChild(*child)) << "it is here";
  EXPECT_FALSE(parent->AddChild(*child, 0)) << "it is here";
  EXPECT_FALSE(elsewhere->AddChild(*child)) << "it has a parent";
  EXPECT_FALSE(elsewhere->AddChild(*child, 0)) << "beyond the last it appends, and it has a parent";
  EXPECT_FALSE(parent->AddChild(*parent)) << "itself";
  EXPECT_FALSE(parent->AddChild(*parent, 0)) << "itself";
  EXPECT_FALSE(child->AddChild(*parent)) << "its ancestor";
  EXPECT_FALSE(elsewhere->RemoveChild(*child)) << "no child";
  Group const foreign = other.Make();
  EXPECT_FALSE(parent->AddChild(*foreign, 0)) << "of another domain";
  EXPECT_TRUE(log.log->names.empty());
  EXPECT_EQ(parent->GetChildren().size(), 1u);
  EXPECT_EQ(item::GetChildIndex(*parent, *elsewhere), 0xFFFFFFFFu);
  EXPECT_TRUE(parent->AddChild(*foreign)) << "appending doesn't look at the domain";
  EXPECT_THAT(log.log->names, ElementsAre("addChild"));
}

TEST_F(Hierarchy, AnInsertByIndexStealsAChildAndBothListsHoldIt) {
  Group const first = Make(), second = Make(), child = Make();
  first->AddChild(*child);
  second->AddChild(*Make());
  EXPECT_TRUE(second->AddChild(*child, 0));
  EXPECT_EQ(child->GetParent(), second);
  EXPECT_EQ(first->GetChildren().size(), 1u);
  EXPECT_EQ(item::GetChildIndex(*second, *child), 0u);
  // The list that lost the parent link can still be closed into a ring; walks must end.
  EXPECT_TRUE(child->AddChild(*first));
  EXPECT_TRUE(first->GetBoundingBox({}, {}).IsEmpty());
  EXPECT_TRUE(first->RemoveChild(*child));
  EXPECT_FALSE(child->GetParent());
}

TEST_F(Hierarchy, ABoxFollowsAChildBeforeItsEvent) {
  Group const parent = Make(), taker = Make();
  Model const model = MakeModel({0, 0, 0}, {5, 5, 5});
  taker->AddChild(*Make());
  HierarchyLog log(*this);
  auto const reach = [](Group const& of) { return of->GetBoundingBox({}, {}).max.x; };
  reach(parent);
  log.onAdd = [&] { EXPECT_EQ(reach(parent), 5.0f); };
  parent->AddChild(*model);
  EXPECT_FALSE(log.onAdd);
  taker->AddChild(*model, 0);
  model->SetTranslationX(2);
  EXPECT_EQ(reach(taker), 7.0f);
  EXPECT_EQ(reach(parent), 5.0f) << "who lost the child isn't marked";
}

TEST_F(Hierarchy, AgainstANaiveModel) {
  Random random;
  std::vector<Group> groups;
  for (int i = 0; i != 60; ++i) groups.push_back(Make());
  std::vector<std::vector<std::size_t>> children(groups.size());
  std::vector<int> parents(groups.size(), -1);
  auto const isAncestor = [&](std::size_t above, std::size_t below) {
    for (int i = static_cast<int>(below); i >= 0; i = parents[static_cast<std::size_t>(i)]) {
      if (static_cast<std::size_t>(i) == above) return true;
    }
    return false;
  };
  for (int step = 0; step != 20000; ++step) {
    // Few parents mostly, so that lists grow across the size from which they are hashed, and back.
    std::size_t const p = random() % (random() % 4 == 0 ? groups.size() : 3);
    std::size_t const c = random() % groups.size();
    auto& list = children[p];
    auto const place = std::find(list.begin(), list.end(), c);
    if (random() % 2 == 0 && (step / 2000) % 2 == 0) {
      auto const index = random() % 70;
      bool const expected = place == list.end() && parents[c] < 0 && !isAncestor(c, p);
      if (parents[c] >= 0 && index < list.size()) continue;  // stealing has a test of its own
      ASSERT_EQ(groups[p]->AddChild(*groups[c], static_cast<unsigned>(index)), expected);
      if (!expected) continue;
      list.insert(index < list.size() ? list.begin() + static_cast<long>(index) : list.end(), c);
      parents[c] = static_cast<int>(p);
    } else {
      ASSERT_EQ(groups[p]->RemoveChild(*groups[c]), place != list.end());
      if (place == list.end()) continue;
      list.erase(place);
      parents[c] = -1;
    }
    ASSERT_TRUE(std::equal(
        list.begin(), list.end(), groups[p]->GetChildren().begin(), groups[p]->GetChildren().end(),
        [&](std::size_t expected, Item const& actual) { return groups[expected] == actual; }));
  }
}

TEST_F(Hierarchy, ListenersMayUndoWhatTheyHear) {
  Group const parent = Make();
  HierarchyLog log(*this);
  Group child = Make();
  auto* const raw = child.get();
  log.onAdd = [&] {
    items->RemoveNode(*raw);
    child.reset();
    parent->RemoveChild(*raw);  // the last reference goes, but for the one that the call holds
  };
  EXPECT_TRUE(parent->AddChild(*child));
  EXPECT_THAT(log.log->names, ElementsAre("addChild", "removeChild"));
  EXPECT_TRUE(parent->GetChildren().empty());
}

TEST_F(Hierarchy, AHundredThousandLevelsAndManyChildren) {
  {
    Group const root = Make();
    Group last = root;
    for (int i = 0; i != 100000; ++i) {
      Group const upper = Make(), lower = Make();
      ASSERT_TRUE(upper->AddChild(*lower));
      ASSERT_TRUE(last->AddChild(*upper)) << "searching the pair alone";
      last = lower;
    }
    Model const leaf = MakeModel();
    last->AddChild(*leaf);
    EXPECT_FALSE(last->AddChild(*root));
    Tree const shown = MakeTree(root);
    EXPECT_FALSE(root->GetBoundingBox({}, {}).IsEmpty());
    leaf->SetTranslationX(3);
    EXPECT_EQ(root->GetBoundingBox({}, {}).max.x, 4.0f);
    NSceneGraphPath<NSceneGraphModelNode> const path(leaf, shown);
    EXPECT_TRUE(IsValid(path));
    EXPECT_EQ(Apply(path.GetGlobalTransform(), Vec3()).x, 3.0f);
    // Only the root holds the hierarchy from here on.
    while (items->GetNodeCount() != 0) items->RemoveNode(*items->GetTypedNodeBegin());
  }
  Group const wide = Make();
  std::vector<Group> some;
  for (int i = 0; i != 200000; ++i) {
    Group child(new NSceneGraphGroupNode(NNodeID(L"x"), nullptr, nullptr));
    ASSERT_TRUE(wide->AddChild(*child));
    if (i % 1000 == 0) some.push_back(child);
  }
  for (auto const& child : some) ASSERT_TRUE(wide->RemoveChild(*child));
  EXPECT_EQ(wide->GetChildren().size(), 199800u);
  EXPECT_TRUE(wide->GetBoundingBox({}, {}).IsEmpty());
}

TEST_F(Hierarchy, CopiesHaveNoChildren) {
  Group const source = Make(), target = Make();
  source->AddChild(*Make());
  Move(*source, 1, 2, 3);
  source->CopyTo(*target);
  EXPECT_TRUE(target->GetChildren().empty());
  EXPECT_TRUE(Near(Apply(target->GetTransform(), Vec3()), {1, 2, 3}));
}

}  // namespace
}  // namespace corvanta::test
