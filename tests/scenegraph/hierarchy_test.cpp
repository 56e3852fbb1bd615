#include "tests/scenegraph/graph.h"

namespace corvanta::test {
namespace {

struct HierarchyLog : data::events::NEventListener {
  std::vector<std::string> lines;
  std::function<void()> onAdd;

 private:
  void OnAddChild(item::NSceneGraphItemNode const& parent,
                  item::NSceneGraphItemNode const& child) override {
    lines.push_back("add");
    EXPECT_EQ(child.GetParent().get(), &parent);
    if (auto const once = std::exchange(onAdd, nullptr)) once();
  }
  void OnRemoveChild(item::NSceneGraphItemNode const&,
                     item::NSceneGraphItemNode const& child) override {
    lines.push_back("remove");
    EXPECT_FALSE(child.GetParent());
  }
};

TEST(Hierarchy, RefusalsChangeNothingAndRaiseNothing) {
  Graph graph;
  Graph other;
  Group const parent = graph.Make(), child = graph.Make(), elsewhere = graph.Make();
  ASSERT_TRUE(parent->AddChild(*child));
  Pointer<HierarchyLog> const log(new HierarchyLog);
  graph.events->AddObserver(*log);

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
  EXPECT_TRUE(log->lines.empty());
  EXPECT_EQ(parent->GetChildren().size(), 1u);
  EXPECT_EQ(item::GetChildIndex(*parent, *elsewhere), 0xFFFFFFFFu);
  EXPECT_TRUE(parent->AddChild(*foreign)) << "appending doesn't look at the domain";
  EXPECT_EQ(log->lines, (std::vector<std::string>{"add"}));
}

TEST(Hierarchy, AnInsertByIndexStealsAChildAndBothListsHoldIt) {
  Graph graph;
  Group const first = graph.Make(), second = graph.Make(), child = graph.Make();
  first->AddChild(*child);
  second->AddChild(*graph.Make());
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

TEST(Hierarchy, ABoxFollowsAChildBeforeItsEvent) {
  Graph graph;
  Group const parent = graph.Make(), taker = graph.Make();
  Model const model = graph.MakeModel({0, 0, 0}, {5, 5, 5});
  taker->AddChild(*graph.Make());
  Pointer<HierarchyLog> const log(new HierarchyLog);
  graph.events->AddObserver(*log);
  auto const reach = [](Group const& of) { return of->GetBoundingBox({}, {}).max.x; };
  reach(parent);
  log->onAdd = [&] { EXPECT_EQ(reach(parent), 5.0f); };
  parent->AddChild(*model);
  EXPECT_FALSE(log->onAdd);
  taker->AddChild(*model, 0);
  model->SetTranslationX(2);
  EXPECT_EQ(reach(taker), 7.0f);
  EXPECT_EQ(reach(parent), 5.0f) << "who lost the child isn't marked";
}

TEST(Hierarchy, AgainstANaiveModel) {
  unsigned const seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  Graph graph;
  std::vector<Group> groups;
  for (int i = 0; i != 60; ++i) groups.push_back(graph.Make());
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

TEST(Hierarchy, ListenersMayUndoWhatTheyHear) {
  Graph graph;
  Group const parent = graph.Make();
  Pointer<HierarchyLog> const log(new HierarchyLog);
  graph.events->AddObserver(*log);
  Group child = graph.Make();
  auto* const raw = child.get();
  log->onAdd = [&] {
    graph.items->RemoveNode(*raw);
    child.reset();
    parent->RemoveChild(*raw);  // the last reference goes, but for the one that the call holds
  };
  EXPECT_TRUE(parent->AddChild(*child));
  EXPECT_EQ(log->lines, (std::vector<std::string>{"add", "remove"}));
  EXPECT_TRUE(parent->GetChildren().empty());
}

TEST(Hierarchy, AHundredThousandLevelsAndManyChildren) {
  Graph graph;
  {
    Group const root = graph.Make();
    Group last = root;
    for (int i = 0; i != 100000; ++i) {
      Group const upper = graph.Make(), lower = graph.Make();
      ASSERT_TRUE(upper->AddChild(*lower));
      ASSERT_TRUE(last->AddChild(*upper)) << "searching the pair alone";
      last = lower;
    }
    Model const leaf = graph.MakeModel({0, 0, 0}, {1, 1, 1});
    last->AddChild(*leaf);
    EXPECT_FALSE(last->AddChild(*root));
    Tree const shown = graph.MakeTree(root);
    EXPECT_FALSE(root->GetBoundingBox({}, {}).IsEmpty());
    leaf->SetTranslationX(3);
    EXPECT_EQ(root->GetBoundingBox({}, {}).max.x, 4.0f);
    scenegraph::NSceneGraphPath<item::NSceneGraphModelNode> const path(leaf, shown);
    EXPECT_TRUE(IsValid(path));
    EXPECT_EQ(Apply(path.GetGlobalTransform(), Vec3()).x, 3.0f);
    // Only the root holds the hierarchy from here on.
    while (graph.items->GetNodeCount() != 0)
      graph.items->RemoveNode(*graph.items->GetTypedNodeBegin());
  }
  Group const wide = graph.Make();
  std::vector<Group> some;
  for (int i = 0; i != 200000; ++i) {
    Group child(new item::NSceneGraphGroupNode(NNodeID(L"x"), nullptr, nullptr));
    ASSERT_TRUE(wide->AddChild(*child));
    if (i % 1000 == 0) some.push_back(child);
  }
  for (auto const& child : some) ASSERT_TRUE(wide->RemoveChild(*child));
  EXPECT_EQ(wide->GetChildren().size(), 199800u);
  EXPECT_TRUE(wide->GetBoundingBox({}, {}).IsEmpty());
}

TEST(Hierarchy, CopiesHaveValuesAndNoChildren) {
  Graph graph;
  Group const source = graph.Make(), target = graph.Make(), child = graph.Make();
  source->AddChild(*child);
  source->SetName(L"arm");
  Move(*source, 1, 2, 3);
  source->CopyTo(*target);
  EXPECT_EQ(target->GetName(), L"arm (2)");
  EXPECT_TRUE(target->GetChildren().empty());
  EXPECT_TRUE(Near(Apply(target->GetTransform(), Vec3()), {1, 2, 3}));
  EXPECT_EQ(graph.Make()->GetName(), L"group");
  EXPECT_EQ(graph.Make()->GetName(), L"group (4)") << "numbers that became free aren't given again";
}

}  // namespace
}  // namespace corvanta::test
