#include "tests/scenegraph/graph.h"

namespace corvanta::test {
namespace {

using ItemPath = scenegraph::NSceneGraphPath<item::NSceneGraphItemNode>;
using CameraPath = scenegraph::NSceneGraphPath<item::NSceneGraphCameraNode>;
using scenegraph::SGPathRelation;

/// A millimetre tree with z up, shown by two references in a metre tree.
struct Nested : Graph {
  Group outerRoot = Make(), innerRoot = Make(), leaf = Make();
  Tree outer = MakeTree(outerRoot), inner = MakeTree(innerRoot);
  Reference first = MakeReference(inner), second = MakeReference(inner);

  Nested() {
    outerRoot->AddChild(*first);
    outerRoot->AddChild(*second);
    innerRoot->AddChild(*leaf);
    inner->SetUnit(0.001);
    inner->SetCoordConversion(tree::CCV_ZUP_TO_YUP);
    outer->SetUnit(2);
    Move(*leaf, 0, 0, 1000);
    Move(*innerRoot, 500, 0, 0);
    Move(*second, 0, 0, 7);
  }
  ItemPath Path(Item const& to, std::vector<Reference> const& through) const {
    ItemPath::CheckPoints points(through.begin(), through.end());
    return {to, outer, points};
  }
};

TEST(GlobalTransform, CrossesReferencesThroughUnitsAndAxes) {
  Nested nested;
  // 500 mm along x, 1000 mm up: metres in the shown tree's frame; the outer unit cancels.
  EXPECT_TRUE(Near(Apply(nested.Path(nested.leaf, {nested.first}).GetGlobalTransform(), Vec3()),
                   {0.5f, 1, 0}));
  EXPECT_TRUE(Near(Apply(nested.Path(nested.leaf, {nested.second}).GetGlobalTransform(), Vec3()),
                   {0.5f, 1, 14}));
  Move(*nested.outerRoot, 10, 0, 0);
  EXPECT_TRUE(Near(Apply(nested.Path(nested.leaf, {nested.second}).GetGlobalTransform(), Vec3()),
                   {20.5f, 1, 14}));
  for (Reference const& reference : {nested.first, nested.second}) {
    ItemPath const path = nested.Path(nested.leaf, {reference});
    Matrix out;
    EXPECT_EQ(scenegraph::GetGlobalTransform(*nested.leaf, *nested.outer, path.GetCheckPoints()),
              path.GetGlobalTransform());
    EXPECT_EQ(scenegraph::GetGlobalTransform(*nested.leaf, *nested.outer, {reference}, out),
              path.GetGlobalTransform());
  }
  EXPECT_THROW(
      scenegraph::GetGlobalTransform(*nested.leaf, *nested.outer, ItemPath::CheckPoints(1)),
      scenegraph::NGetGlobalTransformException);
  nested.leaf->SetTransformIsAbsoluteFlag(true);
  EXPECT_TRUE(Near(Apply(nested.Path(nested.leaf, {nested.second}).GetGlobalTransform(), Vec3()),
                   {0, 1, 0}))
      << "what stands above an absolute item has no effect but for its own tree";
  Box3 const box = nested.Path(nested.leaf, {nested.second}).GetGlobalBoundingBox();
  EXPECT_TRUE(box.IsEmpty());
}

TEST(GlobalTransform, AgainstDoublePrecisionOnAChain) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> any(-1, 1);
  Graph graph;
  Group last = graph.Make();
  Tree const shown = graph.MakeTree(last);
  std::vector<Group> chain{last};
  for (int i = 0; i != 8; ++i) {
    Group next = graph.Make();
    next->SetRotationY(any(random) * 180);
    next->SetRotationPivotX(any(random));
    next->SetScaleZ(1.5 + any(random));
    Move(*next, any(random), any(random), any(random));
    last->AddChild(*next);
    chain.push_back(last = next);
  }
  double product[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
  for (auto group = chain.rbegin(); group != chain.rend(); ++group) {
    Matrix const& m = (*group)->GetTransform();
    double next[4][4] = {};
    for (int r = 0; r != 4; ++r) {
      for (int c = 0; c != 4; ++c) {
        for (int k = 0; k != 4; ++k) next[r][c] += product[r][k] * m(k, c);
      }
    }
    std::copy(&next[0][0], &next[0][0] + 16, &product[0][0]);
  }
  Matrix const global = ItemPath(last, shown).GetGlobalTransform();
  for (int r = 0; r != 4; ++r) {
    for (int c = 0; c != 4; ++c) EXPECT_NEAR(global(r, c), product[r][c], 2e-5);
  }
}

TEST(Paths, FailuresAreToldApart) {
  Nested nested;
  EXPECT_FALSE(IsValid(ItemPath()));
  EXPECT_THROW(ItemPath().GetGlobalTransform(), scenegraph::NSceneGraphPathError);
  EXPECT_THROW(ItemPath().GetLocalBoundingBox(), int);
  EXPECT_THROW(ItemPath().GetGlobalBoundingBox(), scenegraph::NSceneGraphPathError);

  ItemPath const path = nested.Path(nested.leaf, {nested.first});
  EXPECT_TRUE(IsValid(path));
  nested.innerRoot->RemoveChild(*nested.leaf);
  EXPECT_FALSE(IsValid(path));
  EXPECT_THROW(path.GetGlobalTransform(), scenegraph::NGetGlobalTransformException);
  nested.innerRoot->AddChild(*nested.leaf);
  EXPECT_FALSE(IsValid(nested.Path(nested.leaf, {}))) << "it doesn't stand in the outer tree";
  nested.first->SetSceneGraph({});
  EXPECT_FALSE(IsValid(path));
  EXPECT_THROW(path.GetGlobalTransform(), scenegraph::NGetGlobalTransformException);
  nested.leaf->SetTransformIsAbsoluteFlag(true);  // the walk up would end in success
  EXPECT_THROW(path.GetGlobalTransform(), scenegraph::NGetGlobalTransformException);
  EXPECT_THROW(scenegraph::GetGlobalTransform(*nested.leaf, *nested.outer, {nullptr}),
               scenegraph::NGetGlobalTransformException);
  nested.leaf->SetTransformIsAbsoluteFlag(false);
  nested.first->SetSceneGraph(nested.inner);
  EXPECT_TRUE(IsValid(path));
  nested.outerRoot->RemoveChild(*nested.first);
  nested.items->RemoveNode(*nested.first);
  nested.first.reset();
  EXPECT_FALSE(IsValid(path));
  EXPECT_THROW(path.GetGlobalTransform(), scenegraph::NSceneGraphPathError);
  nested.outer->SetRoot({});
  EXPECT_THROW(nested.Path(nested.leaf, {nested.second}).GetGlobalTransform(),
               scenegraph::NGetGlobalTransformException);
  EXPECT_STREQ(scenegraph::NSceneGraphPathError().GetErrorCode(), L"Scene Graph Path Error");
}

TEST(Paths, Relations) {
  Nested nested;
  Group const sibling = nested.Make();
  nested.innerRoot->AddChild(*sibling);
  auto const at = [&](Item const& to, std::vector<Reference> const& through) {
    return nested.Path(to, through);
  };
  struct Case {
    char const* name;
    ItemPath a, b;
    SGPathRelation expected, reversed;
  };
  ItemPath const leafFirst = at(nested.leaf, {nested.first});
  Graph other;
  Group const foreign = other.Make();
  for (Case const& c : {
           Case{"itself", leafFirst, leafFirst, scenegraph::SGPR_FIRST_CONTAINS_SECOND,
                scenegraph::SGPR_FIRST_CONTAINS_SECOND},
           Case{"root above leaf, no check points", at(nested.outerRoot, {}), at(nested.second, {}),
                scenegraph::SGPR_FIRST_CONTAINS_SECOND, scenegraph::SGPR_SECOND_CONTAINS_FIRST},
           Case{"reference above what it shows", at(nested.first, {}), leafFirst,
                scenegraph::SGPR_FIRST_CONTAINS_SECOND, scenegraph::SGPR_SECOND_CONTAINS_FIRST},
           Case{"shown root above leaf", at(nested.innerRoot, {nested.first}), leafFirst,
                scenegraph::SGPR_FIRST_CONTAINS_SECOND, scenegraph::SGPR_SECOND_CONTAINS_FIRST},
           Case{"two showings", leafFirst, at(nested.leaf, {nested.second}),
                scenegraph::SGPR_UNRELATED, scenegraph::SGPR_UNRELATED},
           Case{"the other reference", at(nested.second, {}), leafFirst, scenegraph::SGPR_UNRELATED,
                scenegraph::SGPR_UNRELATED},
           Case{"siblings", at(sibling, {nested.first}), leafFirst, scenegraph::SGPR_UNRELATED,
                scenegraph::SGPR_UNRELATED},
           Case{"another tree", ItemPath(foreign, other.MakeTree(foreign)), leafFirst,
                scenegraph::SGPR_UNRELATED, scenegraph::SGPR_UNRELATED},
       }) {
    EXPECT_EQ(GetPathRelation(c.a, c.b), c.expected) << c.name;
    EXPECT_EQ(GetPathRelation(c.b, c.a), c.reversed) << c.name;
  }
  EXPECT_FALSE(at(nested.leaf, {}) == leafFirst);
  EXPECT_TRUE(at(nested.leaf, {}) < leafFirst) << "a prefix orders first";
  using item::NSceneGraphModelNode;
  EXPECT_FALSE(scenegraph::NSceneGraphPath<NSceneGraphModelNode const>(leafFirst).GetNode())
      << "a group is no model";
  EXPECT_FALSE(NNodeReference<NSceneGraphModelNode const>(leafFirst.GetItemRef()).Get());
  using GroupPath = scenegraph::NSceneGraphPath<item::NSceneGraphGroupNode>;
  GroupPath const narrow(leafFirst);
  EXPECT_EQ(narrow.GetNode(), nested.leaf);
  EXPECT_TRUE(narrow == leafFirst);
  static_assert(!std::is_convertible_v<ItemPath, GroupPath>);
  static_assert(std::is_convertible_v<GroupPath, ItemPath>);
}

struct HostLog : data::events::NEventListener {
  std::vector<std::string> lines;

 private:
  void OnSceneGraphTreeChange(tree::NSceneGraphTreeHost const&,
                              Pointer<tree::NSceneGraphTreeNode> const& old) override {
    lines.push_back(old ? "tree, old" : "tree");
  }
  void OnSceneGraphTreeRootChange(tree::NSceneGraphTreeNode const&, Item const& old) override {
    lines.push_back(old ? "tree's root, old" : "tree's root");
  }
  void OnSceneGraphTreeRootChange(tree::NSceneGraphTreeHost const&,
                                  tree::NSceneGraphTreeNode const&, Item const& old) override {
    lines.push_back(old ? "host's root, old" : "host's root");
  }
};

TEST(TreeHosts, TellOfTreesAndRoots) {
  Graph graph;
  Group const root = graph.Make(), other = graph.Make();
  Tree const shown = graph.MakeTree(root);
  Reference const reference = graph.Make<item::NSceneGraphReferenceNode>();
  Pointer<HostLog> const log(new HostLog);
  graph.events->AddObserver(*log);
  using Lines = std::vector<std::string>;
  auto const take = [&] { return std::exchange(log->lines, {}); };

  reference->SetSceneGraph(shown);
  EXPECT_EQ(take(), (Lines{"tree", "host's root"}));
  EXPECT_TRUE(root->IsReferredFrom(*reference));
  shown->SetRoot(other);
  EXPECT_EQ(take(), (Lines{"host's root, old", "tree's root, old"}));
  EXPECT_FALSE(root->IsReferredFrom(*reference));
  shown->SetRoot(other);
  EXPECT_EQ(take(), (Lines{"host's root, old", "tree's root, old"})) << "no test for equality";
  reference->SetSceneGraph(reference->GetSceneGraphRef());
  EXPECT_EQ(take(), (Lines{"tree, old", "host's root, old"}));
  EXPECT_TRUE(other->IsReferredFrom(*reference));
  reference->SetSceneGraph({});
  EXPECT_EQ(take(), (Lines{"tree, old"})) << "there is no tree to name for the root";
  shown->SetUnit(2);
  EXPECT_TRUE(take().empty());
}

/// Does something of its own at the next event of a host.
struct HostHook : data::events::NEventListener {
  std::function<void()> next;

 private:
  void OnSceneGraphTreeChange(tree::NSceneGraphTreeHost const&,
                              Pointer<tree::NSceneGraphTreeNode> const&) override {
    if (next) std::exchange(next, nullptr)();
  }
  void OnSceneGraphTreeRootChange(tree::NSceneGraphTreeHost const&,
                                  tree::NSceneGraphTreeNode const&, Item const&) override {
    if (next) std::exchange(next, nullptr)();
  }
};

TEST(TreeHosts, AllLeaveTheOldRootWhateverAListenerDoes) {
  Graph graph;
  Group const root = graph.Make(), other = graph.Make();
  Tree const shown = graph.MakeTree(root), another = graph.MakeTree(graph.Make());
  Reference const a = graph.MakeReference(shown), b = graph.MakeReference(shown);
  Pointer<HostHook> const hook(new HostHook);
  graph.events->AddObserver(*hook);
  std::function<void()> const edits[] = {[&] { b->SetSceneGraph(shown); },
                                         [&] { b->SetSceneGraph(another); },
                                         [&] {
                                           b->SetSceneGraph(another);
                                           b->SetSceneGraph(shown);
                                         },
                                         [] { throw 1; }};
  for (auto const& edit : edits) {
    b->SetSceneGraph(shown);
    shown->SetRoot(root);
    EXPECT_TRUE(root->IsReferredFrom(*a) && root->IsReferredFrom(*b));
    hook->next = edit;
    try {
      shown->SetRoot(other);
    } catch (int) {
    }
    EXPECT_FALSE(hook->next);
    EXPECT_FALSE(root->IsReferredFrom(*a)) << &edit - edits;
    EXPECT_FALSE(root->IsReferredFrom(*b)) << &edit - edits;
    EXPECT_TRUE(other->IsReferredFrom(*a));
    EXPECT_TRUE(b->GetSceneGraph()->GetRoot()->IsReferredFrom(*b));
  }
  // A listener of the reference gives the tree that it leaves another root.
  shown->SetRoot(root);
  EXPECT_TRUE(root->IsReferredFrom(*a));
  hook->next = [&] { shown->SetRoot(other); };
  a->SetSceneGraph(another);
  EXPECT_FALSE(root->IsReferredFrom(*a));
}

TEST(TreeHosts, AHandlerOfALateMeetingMaySetAnotherTree) {
  Graph graph;
  Tree const trees[] = {graph.MakeTree(graph.Make()), graph.MakeTree(graph.Make()),
                        graph.MakeTree(graph.Make())};
  Pointer<HostHook> const hook(new HostHook);
  graph.events->AddObserver(*hook);
  for (bool const sets : {false, true}) {
    Reference const host = graph.MakeReference(trees[0]);
    EXPECT_TRUE(trees[0]->RemoveObserver(*host)) << "it meets its tree anew";
    hook->next = [&] { host->SetSceneGraph(trees[1]); };
    if (sets) host->SetSceneGraph(trees[2]);
    Tree const& last = trees[sets ? 2 : 1];
    EXPECT_EQ(host->GetSceneGraph(), last);
    for (Tree const& tree : trees) EXPECT_EQ(tree->RemoveObserver(*host), tree == last);
  }
}

TEST(TreeHosts, SubscribeLate) {
  Graph graph;
  Group const root = graph.Make();
  Reference const reference = graph.Make<item::NSceneGraphReferenceNode>();
  Pointer<HostLog> const log(new HostLog);
  graph.events->AddObserver(*log);
  NNodeReference<tree::NSceneGraphTreeNode> early;
  {
    // A tree that nobody holds yet reads as null.
    struct Unheld : tree::NSceneGraphTreeNode {
      Unheld() : NSceneGraphTreeNode(NNodeID(), nullptr, nullptr) {}
    };
    auto* const made = new Unheld;
    early = *made;
    reference->SetSceneGraph(early);
    EXPECT_EQ(log->lines.size(), 1u);
    EXPECT_FALSE(reference->GetSceneGraph());
    log->lines.clear();
    Tree const held(made);
    held->SetRoot(root);
    EXPECT_TRUE(log->lines.empty()) << "nobody is subscribed yet, and the tree has no multiplexer";
    EXPECT_EQ(reference->GetSceneGraph(), held);
    EXPECT_EQ(log->lines, (std::vector<std::string>{"tree", "host's root", "host's root, old"}));
    log->lines.clear();
    EXPECT_EQ(reference->GetSceneGraph(), held);
    EXPECT_TRUE(log->lines.empty()) << "only once";
  }
  EXPECT_FALSE(reference->GetSceneGraph());
}

struct Scene : Graph {
  Group root = Make();
  Camera camera = Make<item::NSceneGraphCameraNode>();
  Tree shown = MakeTree(root);
  CameraPath path{camera, shown};

  Scene() {
    root->AddChild(*camera);
    Move(*camera, 0, 0, 10);
  }
};

TEST(View, LooksAtTheInterest) {
  Scene scene;
  EXPECT_TRUE(Near(Apply(item::GetViewMatrix(scene.path), Vec3()), {0, 0, -10}));
  EXPECT_TRUE(Near(item::GetFocalVec(scene.path), {0, 0, -10}));
  EXPECT_NEAR(item::GetFocalLength(scene.path), 10, 1e-6);
  Move(*scene.root, 3, 0, 0);
  EXPECT_TRUE(Near(item::GetFocalVec(scene.path), {-3, 0, -10}))
      << "the position is global, and so is the interest";
  EXPECT_EQ(item::GetViewMatrix(CameraPath()), Matrix());
  EXPECT_EQ(item::GetFocalVec(CameraPath()), Vec3());
}

TEST(View, TiltAndStereoShift) {
  Scene scene;
  auto const lens = scene.cameras->CreateNode(NNodeID());
  scene.camera->SetCameraNode(lens);
  lens->SetVerticalTiltAngle(30);
  lens->SetStereoShiftX(0.25);
  // Turned by -30 degrees about the camera's right hand, the sight goes down: the origin moves up.
  double const angle = 30 * 3.14159265358979 / 180;
  EXPECT_TRUE(Near(Apply(item::GetViewMatrix(scene.path), Vec3()),
                   {0.25f, static_cast<float>(10 * std::sin(angle)),
                    static_cast<float>(-10 * std::cos(angle))}));
  lens->SetProjectionType(static_cast<data::domain::camera::NProjectionType>(1));
  EXPECT_TRUE(Near(Apply(item::GetViewMatrix(scene.path), Vec3()), {0.25f, 0, -10}));
}

TEST(View, HeadMountedDisplayTurnsTheHeadTowardsTheInterest) {
  Scene scene;
  Move(*scene.camera, 10, 0, 0);
  // Forward is -x now; the eye stands half to the head's right, which is -z.
  Matrix const view = item::GetViewMatrixHMD(scene.path, Matrix(), Vec3(0.5f, 0, 0));
  EXPECT_TRUE(Near(Apply(view, {10, 0, -0.5f}), {0, 0, 0}));
  EXPECT_TRUE(Near(Apply(view, {0, 0, -0.5f}), {0, 0, -10}));
}

TEST(ClipDistances, OfABox) {
  Scene scene;
  auto const clip = [&](float min, float max) {
    return item::GetClipDistances(scene.path, Box3({-1, -1, min}, {1, 1, max}));
  };
  Move(*scene.camera, 0, 0, 0);
  scene.camera->SetInterestZ(-4);
  auto const inFront = clip(-10, -2);
  EXPECT_NEAR(inFront.first, 0.01001, 1e-6);
  EXPECT_NEAR(inFront.second, 10.01, 1e-5);
  auto const around = clip(-10, 5);
  EXPECT_NEAR(around.first, 0.003996, 1e-7);
  EXPECT_NEAR(around.second, 10.01, 1e-5);
  auto const empty = item::GetClipDistances(scene.path, *scene.shown);
  EXPECT_NEAR(empty.second, 1.001, 1e-6) << "the box from -1 to 1";
}

TEST(CopyData, PutsOneCameraWhereAnotherStands) {
  Scene scene;
  Camera const other = scene.Make<item::NSceneGraphCameraNode>();
  Group const arm = scene.Make();
  scene.root->AddChild(*arm);
  arm->AddChild(*other);
  arm->SetRotationY(90);
  double translation[3] = {7, 7, 7};
  item::GetSceneGraphCameraTranslationCopyData(scene.path, CameraPath(), translation);
  EXPECT_EQ(translation[0], 7);
  item::GetSceneGraphCameraTranslationCopyData(scene.path, {other, scene.shown}, translation);
  Move(*other, translation[0], translation[1], translation[2]);
  EXPECT_TRUE(Near(Apply(CameraPath(other, scene.shown).GetGlobalTransform(), Vec3()), {0, 0, 10}));
}

}  // namespace
}  // namespace corvanta::test
