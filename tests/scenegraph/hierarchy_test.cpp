#include "tests/support/world.h"

namespace corvanta::test {
namespace {

using Hierarchy = WorldTest;

/// Records, and looks at the child's parent; what `onAdd` holds is called once.
class HierarchyLog {
 public:
  explicit HierarchyLog(World const& world) : m_log(world.Listen()) {
    m_log->react = [this](NSignal const& signal) {
      if (signal.kind != data::events::NSK_ADD_CHILD &&
          signal.kind != data::events::NSK_REMOVE_CHILD)
        return;
      auto const& child = dynamic_cast<NSceneGraphItemNode const&>(*signal.other);
      bool const isAdded = signal.kind == data::events::NSK_ADD_CHILD;
      EXPECT_EQ(child.GetParent().get(), isAdded ? signal.node : nullptr);
      if (auto const once = isAdded ? std::exchange(onAdd, nullptr) : nullptr) once();
    };
  }
  std::vector<std::string> const& GetNames() const { return m_log->names; }

  std::function<void()> onAdd;

 private:
  Pointer<support::EventLog> const m_log;
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
  EXPECT_TRUE(log.GetNames().empty());
  EXPECT_EQ(parent->GetChildren().size(), 1u);
  EXPECT_EQ(item::GetChildIndex(*parent, *elsewhere), 0xFFFFFFFFu);
  EXPECT_TRUE(parent->AddChild(*foreign)) << "appending doesn't look at the domain";
  EXPECT_THAT(log.GetNames(), ElementsAre("addChild"));
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
  EXPECT_THAT(log.GetNames(), ElementsAre("addChild", "removeChild"));
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
