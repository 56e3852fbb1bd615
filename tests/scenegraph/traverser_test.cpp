#include <pthread.h>

#include "corvanta/core/detail/scope_exit.h"
#include "tests/support/test.h"

namespace corvanta::data::domain::scenegraph {
namespace {

using item::NSceneGraphCameraNode;
using item::NSceneGraphGroupNode;
using item::NSceneGraphItemNode;
using item::NSceneGraphLightNode;
using item::NSceneGraphModelNode;
using item::NSceneGraphReferenceNode;
using tree::NSceneGraphTreeNode;

/// Writes down every hook as "<kind of hook><name>[<check points>]".
class Recorder final : public NSceneGraphTraverser {
 public:
  std::vector<std::wstring> heard;
  bool entersReferences = true;

  bool HasTree() const { return static_cast<bool>(GetTree()); }
  NSceneGraphTreeNode const* Tree() const { return GetTree().Get().get(); }

 protected:
  void BeforeCommon(NSceneGraphItemNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"", node, data, at);
  }
  void AfterCommon(NSceneGraphItemNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"/", node, data, at);
  }
  void Before(NSceneGraphReferenceNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"reference ", node, data, at);
    if (entersReferences) NSceneGraphTraverser::Before(node, data, at);
  }
  void Before(NSceneGraphLightNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"light ", node, data, at);
  }
  void Before(NSceneGraphGroupNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"group ", node, data, at);
  }
  void Before(NSceneGraphCameraNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"camera ", node, data, at);
  }
  void Before(NSceneGraphModelNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"model ", node, data, at);
  }
  void Before(NSceneGraphTreeNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"tree ", node, data, at);
  }
  void After(NSceneGraphReferenceNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"/reference ", node, data, at);
  }
  void After(NSceneGraphLightNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"/light ", node, data, at);
  }
  void After(NSceneGraphGroupNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"/group ", node, data, at);
  }
  void After(NSceneGraphCameraNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"/camera ", node, data, at);
  }
  void After(NSceneGraphModelNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"/model ", node, data, at);
  }
  void After(NSceneGraphTreeNode& node, void const* data, NCheckPoints const& at) override {
    Write(L"/tree ", node, data, at);
  }

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
  int items = 0;
  int open = 0;
  int trees = 0;
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

class Traverser : public testing::Test {
 protected:
  Pointer<item::NSceneGraphItemDomain> items{
      new item::NSceneGraphItemDomain(nullptr, nullptr, nullptr, nullptr, nullptr)};
  Pointer<tree::NSceneGraphTreeDomain> trees{
      new tree::NSceneGraphTreeDomain(nullptr, nullptr, nullptr)};
  Recorder recorder;

  template <class T = NSceneGraphGroupNode>
  Pointer<T> Make(wchar_t const* name, NSceneGraphItemNode* parent = nullptr) {
    auto const made = items->CreateNode<T>(NNodeID());
    made->SetName(name);
    if (parent != nullptr) parent->AddChild(*made);
    return made;
  }
  Pointer<NSceneGraphTreeNode> MakeTree(wchar_t const* name, NSceneGraphItemNode const* root) {
    auto const made = trees->CreateNode(NNodeID());
    made->SetName(name);
    if (root != nullptr) made->SetRoot(*root);
    return made;
  }
  std::vector<std::wstring> Walk(NSceneGraphTreeNode& tree) {
    recorder.heard.clear();
    recorder.Start(tree, &recorder);
    return recorder.heard;
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
  auto const tree = MakeTree(L"t", root.get());
  EXPECT_THAT(Walk(*tree), ElementsAre(L"tree t", L"a", L"group a", L"b", L"camera b", L"c",
                                       L"light c", L"/light c", L"/c", L"/camera b", L"/b", L"d",
                                       L"reference d", L"e", L"model e", L"/model e", L"/e",
                                       L"/reference d", L"/d", L"/group a", L"/a", L"/tree t"));
  EXPECT_EQ(recorder.Tree(), tree.get());
  EXPECT_FALSE(Recorder(recorder).HasTree());
  EXPECT_THAT(Walk(*MakeTree(L"rootless", nullptr)),
              ElementsAre(L"tree rootless", L"/tree rootless"));
}

TEST_F(Traverser, CheckPointsGrowByTheReferencesPassed) {
  auto const leaf = Make(L"leaf");
  auto const innermost = MakeTree(L"t3", leaf.get());
  auto const r2 = Make<NSceneGraphReferenceNode>(L"r2");
  Make(L"child", r2.get());
  r2->SetSceneGraph(*innermost);
  auto const inner = MakeTree(L"t2", r2.get());
  auto const r1 = Make<NSceneGraphReferenceNode>(L"r1");
  r1->SetSceneGraph(*inner);
  auto const tree = MakeTree(L"t1", r1.get());
  std::vector<std::wstring> const expected{L"tree t1",
                                           L"r1",
                                           L"reference r1",
                                           L"tree t2 r1",
                                           L"r2 r1",
                                           L"reference r2 r1",
                                           L"tree t3 r1 r2",
                                           L"leaf r1 r2",
                                           L"group leaf r1 r2",
                                           L"/group leaf r1 r2",
                                           L"/leaf r1 r2",
                                           L"/tree t3 r1 r2",
                                           L"child r1",
                                           L"group child r1",
                                           L"/group child r1",
                                           L"/child r1",
                                           L"/reference r2 r1",
                                           L"/r2 r1",
                                           L"/tree t2 r1",
                                           L"/reference r1",
                                           L"/r1",
                                           L"/tree t1"};
  EXPECT_EQ(Walk(*tree), expected);

  recorder.heard.clear();
  recorder.Start(NSceneGraphPath<NSceneGraphItemNode>(*leaf, *tree, {*r1, *r2}), &recorder);
  EXPECT_THAT(recorder.heard, ElementsAre(L"leaf r1 r2", L"group leaf r1 r2", L"/group leaf r1 r2",
                                          L"/leaf r1 r2"));
  EXPECT_EQ(recorder.Tree(), tree.get());
  recorder.heard.clear();
  recorder.Start(NSceneGraphPath<NSceneGraphItemNode>(), &recorder);
  EXPECT_THAT(recorder.heard, IsEmpty());
  EXPECT_EQ(recorder.Tree(), tree.get());

  recorder.entersReferences = false;
  EXPECT_THAT(Walk(*tree), ElementsAre(L"tree t1", L"r1", L"reference r1", L"/reference r1", L"/r1",
                                       L"/tree t1"));
}

TEST_F(Traverser, ATreeThatShowsItselfIsCutAtItsSecondShowing) {
  auto const root = Make(L"root");
  auto const first = Make<NSceneGraphReferenceNode>(L"first", root.get());
  auto const second = Make<NSceneGraphReferenceNode>(L"second", root.get());
  auto const shown = Make(L"shown");
  auto const back = Make<NSceneGraphReferenceNode>(L"back", shown.get());
  auto const tree = MakeTree(L"t", root.get());
  auto const inner = MakeTree(L"inner", shown.get());
  first->SetSceneGraph(*inner);
  second->SetSceneGraph(*inner);
  back->SetSceneGraph(*tree);
  Counter counter;
  counter.Start(*tree, nullptr);
  EXPECT_EQ(counter.items, 3 + 2 * 2);
  EXPECT_EQ(counter.trees, 3);

  // The trees on the way down count as shown.
  Counter below;
  below.Start(NSceneGraphPath<NSceneGraphItemNode>(*shown, *tree, {*first}), nullptr);
  EXPECT_EQ(below.items, 2);
  // Check points that don't lead to the item cut nothing.
  for (auto const& wrong :
       {NSceneGraphTraverser::NCheckPoints{*first}, {*back}, {*first, *first}}) {
    Counter all;
    all.Start(NSceneGraphPath<NSceneGraphItemNode>(*first, *tree, wrong), nullptr);
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
  counter.Start(*MakeTree(L"t", a.get()), nullptr);
  EXPECT_EQ(counter.items, 2);
  EXPECT_EQ(counter.open, 0);
  b->RemoveChild(*a);
}

/// Runs `run` on a thread with a stack of 1 MiB.
void RunOnASmallStack(std::function<void()> run) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, 1 << 20);
  pthread_t thread;
  auto const call = [](void* function) -> void* {
    (*static_cast<std::function<void()>*>(function))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, call, &run), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
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
  std::vector<Pointer<NSceneGraphTreeNode>> doubled{MakeTree(L"", Make(L"").get())};
  for (int level = 0; level != 26; ++level) {
    auto const root = Make(L"");
    for (int i = 0; i != 2; ++i) {
      Make<NSceneGraphReferenceNode>(L"", root.get())->SetSceneGraph(*doubled.back());
    }
    doubled.push_back(MakeTree(L"", root.get()));
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
  for (int i = 0; i != 20000; ++i) {
    auto const reference = Make<NSceneGraphReferenceNode>(L"");
    reference->SetSceneGraph(*nested);
    nested = MakeTree(L"", reference.get());
  }
  RunOnASmallStack([&] {
    EXPECT_THAT(ends(counter, *nested), testing::HasSubstr("nested"));
    EXPECT_GT(counter.deepest, 100u);
    EXPECT_EQ(ends(counter, *doubled[2]), "");
  });
}

TEST_F(Traverser, WalksWhatIsDeep) {
  Pointer<NSceneGraphItemNode> root = Make(L"root");
  for (int i = 0; i != 100000; ++i) {
    Pointer<NSceneGraphItemNode> const parent(
        new NSceneGraphGroupNode(NNodeID(), nullptr, nullptr));
    parent->AddChild(*root);
    root = parent;
  }
  auto const tree = MakeTree(L"t", root.get());
  Counter counter;
  counter.Start(*tree, nullptr);
  EXPECT_EQ(counter.items, 100001);
  EXPECT_EQ(counter.open, 0);

  Pointer<NSceneGraphTreeNode> outer = tree;
  for (int i = 0; i != 1000; ++i) {
    auto const reference = Make<NSceneGraphReferenceNode>(L"");
    reference->SetSceneGraph(*outer);
    outer = MakeTree(L"", reference.get());
  }
  Counter nested;
  nested.Start(*outer, nullptr);
  EXPECT_EQ(nested.items, 101001);
  EXPECT_EQ(nested.deepest, 1000u);
}

}  // namespace
}  // namespace corvanta::data::domain::scenegraph
