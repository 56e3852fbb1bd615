#include <boost/thread.hpp>

#include "corvanta/core/detail/scope_exit.h"
#include "tests/support/world.h"

namespace corvanta::data::domain::scenegraph {
namespace {

using ItemPath = NSceneGraphPath<NSceneGraphItemNode>;

/// Writes down every hook as "<kind of hook><name>[<check points>]".
class Recorder final : public NSceneGraphTraverser {
 public:
  std::vector<std::wstring> heard;
  bool entersReferences = true;

  bool HasTree() const { return static_cast<bool>(GetTree()); }
  Pointer<NSceneGraphTreeNode> GetWalked() const { return GetTree().Get(); }

 protected:
  void Before(NSceneGraphReferenceNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"reference ", node, data, at);
    if (entersReferences) NSceneGraphTraverser::Before(node, data, at);
  }
#define HOOK(WHEN, CLASS, NAME)                                               \
  void WHEN(CLASS& node, void const* data, NCheckPoints const& at) override { \
    Write(NAME, node, data, at);                                              \
  }
  HOOK(BeforeCommon, NSceneGraphItemNode, L"")
  HOOK(AfterCommon, NSceneGraphItemNode, L"/")
  HOOK(Before, NSceneGraphLightNode, L"light ")
  HOOK(Before, NSceneGraphGroupNode, L"group ")
  HOOK(Before, NSceneGraphCameraNode, L"camera ")
  HOOK(Before, NSceneGraphModelNode, L"model ")
  HOOK(Before, NSceneGraphTreeNode, L"tree ")
  HOOK(After, NSceneGraphReferenceNode, L"/reference ")
  HOOK(After, NSceneGraphLightNode, L"/light ")
  HOOK(After, NSceneGraphGroupNode, L"/group ")
  HOOK(After, NSceneGraphCameraNode, L"/camera ")
  HOOK(After, NSceneGraphModelNode, L"/model ")
  HOOK(After, NSceneGraphTreeNode, L"/tree ")
#undef HOOK

 private:
  void Write(wchar_t const* hook, NNode const& node, void const* data, NCheckPoints const& at) {
    EXPECT_EQ(data, this);
    std::wstring text = hook + node.GetName();
    for (auto const& reference : at) text += L" " + reference.Get()->GetName();
    heard.push_back(text);
  }
};

/// Counts items and trees; throws at item number `throwAt`.
class Counter final : public NSceneGraphTraverser {
 public:
  int items = 0, open = 0, trees = 0;
  std::size_t deepest = 0;
  int throwAt = -1;

 protected:
  using NSceneGraphTraverser::Before;
  void BeforeCommon(NSceneGraphItemNode&, void const*, NCheckPoints const& at) override {
    ++open;
    deepest = std::max(deepest, at.size());
    if (items++ == throwAt) throw std::runtime_error("hook");
  }
  void AfterCommon(NSceneGraphItemNode&, void const*, NCheckPoints const&) override { --open; }
  void Before(NSceneGraphTreeNode&, void const*, NCheckPoints const&) override { ++trees; }
};

class Traverser : public testing::Test, protected World {
 protected:
  Recorder recorder;

  template <class T = NSceneGraphGroupNode>
  Pointer<T> Make(wchar_t const* name, NSceneGraphItemNode* parent = nullptr) {
    auto const made = World::Make<T>();
    made->SetName(name);
    if (parent != nullptr) parent->AddChild(*made);
    return made;
  }
  Tree MakeTree(wchar_t const* name, Item const& root) {
    auto const made = World::MakeTree(root);
    made->SetName(name);
    return made;
  }
  /// What was heard since, joined by commas.
  std::wstring Take() {
    std::wstring all;
    for (auto const& hook : std::exchange(recorder.heard, {})) all += hook + L", ";
    return all;
  }
  std::wstring Walk(NSceneGraphTreeNode& tree) {
    recorder.Start(tree, &recorder);
    return Take();
  }
};

TEST_F(Traverser, CallsTheHooksOfEachKindInOrder) {
  auto const root = Make(L"a");
  auto const camera = Make<NSceneGraphCameraNode>(L"b", root.get());
  auto const hidden = Make<NSceneGraphLightNode>(L"c", camera.get());
  hidden->SetIsVisibleFlag(false);
  auto const reference = Make<NSceneGraphReferenceNode>(L"d", root.get());
  Make<NSceneGraphModelNode>(L"e", reference.get());
  EXPECT_FALSE(recorder.HasTree());
  auto const tree = MakeTree(L"t", root);
  EXPECT_EQ(Walk(*tree),
            L"tree t, a, group a, b, camera b, c, light c, /light c, /c, /camera b, /b, d, "
            L"reference d, e, model e, /model e, /e, /reference d, /d, /group a, /a, /tree t, ");
  EXPECT_EQ(recorder.GetWalked(), tree);
  EXPECT_FALSE(Recorder(recorder).HasTree());
  EXPECT_EQ(Walk(*MakeTree(L"rootless", nullptr)), L"tree rootless, /tree rootless, ");
}

TEST_F(Traverser, CheckPointsGrowByTheReferencesPassed) {
  auto const leaf = Make(L"leaf");
  auto const innermost = MakeTree(L"t3", leaf);
  auto const r2 = Make<NSceneGraphReferenceNode>(L"r2");
  Make(L"child", r2.get());
  r2->SetSceneGraph(*innermost);
  auto const inner = MakeTree(L"t2", r2);
  auto const r1 = Make<NSceneGraphReferenceNode>(L"r1");
  r1->SetSceneGraph(*inner);
  auto const tree = MakeTree(L"t1", r1);
  EXPECT_EQ(Walk(*tree),
            L"tree t1, r1, reference r1, tree t2 r1, r2 r1, reference r2 r1, tree t3 r1 r2, "
            L"leaf r1 r2, group leaf r1 r2, /group leaf r1 r2, /leaf r1 r2, /tree t3 r1 r2, "
            L"child r1, group child r1, /group child r1, /child r1, /reference r2 r1, /r2 r1, "
            L"/tree t2 r1, /reference r1, /r1, /tree t1, ");
  recorder.Start(ItemPath(*leaf, *tree, {*r1, *r2}), &recorder);
  EXPECT_EQ(Take(), L"leaf r1 r2, group leaf r1 r2, /group leaf r1 r2, /leaf r1 r2, ");
  EXPECT_EQ(recorder.GetWalked(), tree);
  recorder.Start(ItemPath(), &recorder);
  EXPECT_EQ(Take(), L"");
  EXPECT_EQ(recorder.GetWalked(), tree);

  recorder.entersReferences = false;
  EXPECT_EQ(Walk(*tree), L"tree t1, r1, reference r1, /reference r1, /r1, /tree t1, ");
}

TEST_F(Traverser, ATreeThatShowsItselfIsCutAtItsSecondShowing) {
  auto const root = Make(L"root");
  auto const first = Make<NSceneGraphReferenceNode>(L"first", root.get());
  auto const second = Make<NSceneGraphReferenceNode>(L"second", root.get());
  auto const shown = Make(L"shown");
  auto const back = Make<NSceneGraphReferenceNode>(L"back", shown.get());
  auto const tree = MakeTree(L"t", root);
  auto const inner = MakeTree(L"inner", shown);
  first->SetSceneGraph(*inner);
  second->SetSceneGraph(*inner);
  back->SetSceneGraph(*tree);
  Counter counter;
  counter.Start(*tree, nullptr);
  EXPECT_EQ(counter.items, 3 + 2 * 2);
  EXPECT_EQ(counter.trees, 3);

  // The trees on the way down count as shown.
  Counter below;
  below.Start(ItemPath(*shown, *tree, {*first}), nullptr);
  EXPECT_EQ(below.items, 2);
  // Check points that don't lead to the item cut nothing.
  for (auto const& wrong :
       {NSceneGraphTraverser::NCheckPoints{*first}, {*back}, {*first, *first}}) {
    Counter all;
    all.Start(ItemPath(*first, *tree, wrong), nullptr);
    EXPECT_EQ(all.items, 6);  // first, shown, back, root, and the two references once more
  }
  // A hook's exception leaves the traverser as good as new.
  Counter thrown;
  thrown.throwAt = 3;
  EXPECT_THROW(thrown.Start(*tree, nullptr), std::runtime_error);
  thrown.items = thrown.trees = 0;
  thrown.throwAt = -1;
  thrown.Start(*tree, nullptr);
  EXPECT_EQ(thrown.items, 7);
}

TEST_F(Traverser, AnItemBelowItselfIsCut) {
  auto const a = Make(L"a");
  auto const b = Make(L"b", a.get());
  auto const c = Make(L"c");
  Make(L"d", c.get());
  // b stands in the lists of a and c, and its parent is c, so that a can be put below it.
  ASSERT_TRUE(c->AddChild(*b, 0));
  ASSERT_TRUE(b->AddChild(*a));
  Counter counter;
  counter.Start(*MakeTree(L"t", a), nullptr);
  EXPECT_EQ(counter.items, 2);
  EXPECT_EQ(counter.open, 0);
  b->RemoveChild(*a);
}

TEST_F(Traverser, EndsBeyondItsBudgetAndItsStack) {
  EXPECT_EQ(GetWalkBudget(), 50'000'000u);
  core::detail::ScopeExit const reset([] { SetWalkBudget(kDefaultWalkBudget); });
  auto const ends = [](Counter& counter, NSceneGraphTreeNode& tree) -> std::string {
    counter.items = counter.trees = 0;
    try {
      counter.Start(tree, nullptr);
    } catch (NSceneGraphWalkError const& error) {
      return error.what();
    }
    return "";
  };
  std::vector<Tree> doubled{MakeTree(L"", Make(L""))};
  for (int level = 0; level != 26; ++level) {
    auto const root = Make(L"");
    for (int i = 0; i != 2; ++i) root->AddChild(*MakeReference(doubled.back()));
    doubled.push_back(MakeTree(L"", root));
  }
  Counter counter;
  SetWalkBudget(22);
  EXPECT_THAT(ends(counter, *doubled.back()), testing::HasSubstr("budget"));
  EXPECT_EQ(counter.items + counter.trees, 22);
  SetWalkBudget(20);
  EXPECT_EQ(ends(counter, *doubled[2]), "") << "each walk has the whole budget";
  EXPECT_EQ(counter.items + counter.trees, 20);

  SetWalkBudget(kDefaultWalkBudget);
  auto nested = doubled[0];
  for (int i = 0; i != 20000; ++i) nested = MakeTree(L"", MakeReference(nested));
  boost::thread::attributes small;
  small.set_stack_size(1 << 20);
  boost::thread(small, [&] {
    EXPECT_THAT(ends(counter, *nested), testing::HasSubstr("nested"));
    EXPECT_GT(counter.deepest, 100u);
    EXPECT_EQ(ends(counter, *doubled[2]), "");
  }).join();
}

TEST_F(Traverser, WalksWhatIsDeep) {
  Item root = Make(L"root");
  for (int i = 0; i != 100000; ++i) {
    Item const parent = New<NSceneGraphGroupNode>(NNodeID(), nullptr, nullptr);
    parent->AddChild(*root);
    root = parent;
  }
  auto const tree = MakeTree(L"t", root);
  Counter counter;
  counter.Start(*tree, nullptr);
  EXPECT_EQ(counter.items, 100001);
  EXPECT_EQ(counter.open, 0);

  Tree outer = tree;
  for (int i = 0; i != 1000; ++i) outer = MakeTree(L"", MakeReference(outer));
  Counter nested;
  nested.Start(*outer, nullptr);
  EXPECT_EQ(nested.items, 101001);
  EXPECT_EQ(nested.deepest, 1000u);
}

}  // namespace
}  // namespace corvanta::data::domain::scenegraph
