#include "tests/support/world.h"

namespace corvanta::test {
namespace {

using ItemPath = NSceneGraphPath<NSceneGraphItemNode>;
using CameraPath = NSceneGraphPath<NSceneGraphCameraNode>;
using namespace scenegraph;

/// A millimetre tree with z up, shown by two references in a metre tree.
struct Nested : WorldTest {
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

using GlobalTransform = Nested;
using Paths = Nested;

struct TreeHosts : WorldTest {
  using Lines = std::vector<std::string>;
  Pointer<support::EventLog> const log = Listen();
  Lines lines;  // whom a change of trees and roots is about, and whether of an old one
  std::function<void()> next;  // called once, at the next event of a host

  TreeHosts() {
    log->react = [this](NSignal const& signal) {
      std::string const what = signal.kind == data::events::NSK_SCENE_GRAPH_TREE_CHANGE ? "tree"
                               : signal.treeHost ? "host's root"
                                                 : "tree's root";
      lines.push_back(signal.other ? what + ", old" : what);
      if (signal.treeHost && next) std::exchange(next, nullptr)();
    };
  }
  Lines Take() { return std::exchange(lines, {}); }
};

TEST_F(GlobalTransform, CrossesReferencesThroughUnitsAndAxes) {
  // 500 mm along x, 1000 mm up: metres in the shown tree's frame; the outer unit cancels.
  EXPECT_TRUE(Near(Apply(Path(leaf, {first}).GetGlobalTransform(), Vec3()), {0.5f, 1, 0}));
  EXPECT_TRUE(Near(Apply(Path(leaf, {second}).GetGlobalTransform(), Vec3()), {0.5f, 1, 14}));
  Move(*outerRoot, 10, 0, 0);
  EXPECT_TRUE(Near(Apply(Path(leaf, {second}).GetGlobalTransform(), Vec3()), {20.5f, 1, 14}));
  for (Reference const& reference : {first, second}) {
    ItemPath const path = Path(leaf, {reference});
    Matrix out;
    EXPECT_EQ(GetGlobalTransform(*leaf, *outer, path.GetCheckPoints()), path.GetGlobalTransform());
    EXPECT_EQ(GetGlobalTransform(*leaf, *outer, {reference}, out), path.GetGlobalTransform());
  }
  EXPECT_THROW(GetGlobalTransform(*leaf, *outer, ItemPath::CheckPoints(1)),
               NGetGlobalTransformException);
  leaf->SetTransformIsAbsoluteFlag(true);
  EXPECT_TRUE(Near(Apply(Path(leaf, {second}).GetGlobalTransform(), Vec3()), {0, 1, 0}))
      << "what stands above an absolute item has no effect but for its own tree";
  EXPECT_TRUE(Path(leaf, {second}).GetGlobalBoundingBox().IsEmpty());
}

TEST_F(GlobalTransform, MultipliesAChainFromTheLeafUp) {
  Group last = Make();
  Tree const shown = MakeTree(last);
  for (int level = 0; level != 8; ++level) {
    Group const next = Make();
    SetTransform(*next, item::CalcTransformMatrix({1, 2, 4}, {}, {}, {1, 2, 3}));
    last->AddChild(*next);
    last = next;
  }
  // Sums of the powers of 1, 2 and 4, all exact.
  EXPECT_EQ(ItemPath(last, shown).GetGlobalTransform(),
            Matrix(1, 0, 0, 0, 0, 256, 0, 0, 0, 0, 65536, 0, 8, 510, 65535, 1));
}

TEST_F(Paths, FailuresAreToldApart) {
  EXPECT_FALSE(IsValid(ItemPath()));
  EXPECT_THROW(ItemPath().GetGlobalTransform(), NSceneGraphPathError);
  EXPECT_THROW(ItemPath().GetLocalBoundingBox(), int);
  EXPECT_THROW(ItemPath().GetGlobalBoundingBox(), NSceneGraphPathError);

  ItemPath const path = Path(leaf, {first});
  EXPECT_TRUE(IsValid(path));
  innerRoot->RemoveChild(*leaf);
  EXPECT_FALSE(IsValid(path));
  EXPECT_THROW(path.GetGlobalTransform(), NGetGlobalTransformException);
  innerRoot->AddChild(*leaf);
  EXPECT_FALSE(IsValid(Path(leaf, {}))) << "it doesn't stand in the outer tree";
  first->SetSceneGraph({});
  EXPECT_FALSE(IsValid(path));
  EXPECT_THROW(path.GetGlobalTransform(), NGetGlobalTransformException);
  leaf->SetTransformIsAbsoluteFlag(true);  // the walk up would end in success
  EXPECT_THROW(path.GetGlobalTransform(), NGetGlobalTransformException);
  EXPECT_THROW(GetGlobalTransform(*leaf, *outer, {nullptr}), NGetGlobalTransformException);
  leaf->SetTransformIsAbsoluteFlag(false);
  first->SetSceneGraph(inner);
  EXPECT_TRUE(IsValid(path));
  outerRoot->RemoveChild(*first);
  items->RemoveNode(*first);
  first.reset();
  EXPECT_FALSE(IsValid(path));
  EXPECT_THROW(path.GetGlobalTransform(), NSceneGraphPathError);
  outer->SetRoot({});
  EXPECT_THROW(Path(leaf, {second}).GetGlobalTransform(), NGetGlobalTransformException);
  EXPECT_STREQ(NSceneGraphPathError().GetErrorCode(), L"Scene Graph Path Error");
}

TEST_F(Paths, Relations) {
  Group const sibling = Make();
  innerRoot->AddChild(*sibling);
  struct Case {
    char const* name;
    ItemPath a, b;
    SGPathRelation expected, reversed;
  };
  auto const above = SGPR_FIRST_CONTAINS_SECOND, below = SGPR_SECOND_CONTAINS_FIRST,
             apart = SGPR_UNRELATED;
  ItemPath const leafFirst = Path(leaf, {first});
  World other;
  Group const foreign = other.Make();
  for (Case const& c : {
           Case{"itself", leafFirst, leafFirst, above, above},
           Case{"root, no check points", Path(outerRoot, {}), Path(second, {}), above, below},
           Case{"reference above what it shows", Path(first, {}), leafFirst, above, below},
           Case{"shown root above leaf", Path(innerRoot, {first}), leafFirst, above, below},
           Case{"two showings", leafFirst, Path(leaf, {second}), apart, apart},
           Case{"the other reference", Path(second, {}), leafFirst, apart, apart},
           Case{"siblings", Path(sibling, {first}), leafFirst, apart, apart},
           Case{"another tree", {foreign, other.MakeTree(foreign)}, leafFirst, apart, apart},
       }) {
    EXPECT_EQ(GetPathRelation(c.a, c.b), c.expected) << c.name;
    EXPECT_EQ(GetPathRelation(c.b, c.a), c.reversed) << c.name;
  }
  EXPECT_FALSE(Path(leaf, {}) == leafFirst);
  EXPECT_TRUE(Path(leaf, {}) < leafFirst) << "a prefix orders first";
  EXPECT_FALSE(NSceneGraphPath<NSceneGraphModelNode const>(leafFirst).GetNode())
      << "a group is no model";
  EXPECT_FALSE(NNodeReference<NSceneGraphModelNode const>(leafFirst.GetItemRef()).Get());
  using GroupPath = NSceneGraphPath<NSceneGraphGroupNode>;
  GroupPath const narrow(leafFirst);
  EXPECT_EQ(narrow.GetNode(), leaf);
  EXPECT_TRUE(narrow == leafFirst);
  static_assert(!std::is_convertible_v<ItemPath, GroupPath>);
  static_assert(std::is_convertible_v<GroupPath, ItemPath>);
}

TEST_F(TreeHosts, TellOfTreesAndRoots) {
  Group const root = Make(), other = Make();
  Tree const shown = MakeTree(root);
  Reference const reference = Make<NSceneGraphReferenceNode>();
  Take();
  reference->SetSceneGraph(shown);
  EXPECT_EQ(Take(), (Lines{"tree", "host's root"}));
  EXPECT_TRUE(root->IsReferredFrom(*reference));
  shown->SetRoot(other);
  EXPECT_EQ(Take(), (Lines{"host's root, old", "tree's root, old"}));
  EXPECT_FALSE(root->IsReferredFrom(*reference));
  shown->SetRoot(other);
  EXPECT_EQ(Take(), (Lines{"host's root, old", "tree's root, old"})) << "no test for equality";
  reference->SetSceneGraph(reference->GetSceneGraphRef());
  EXPECT_EQ(Take(), (Lines{"tree, old", "host's root, old"}));
  EXPECT_TRUE(other->IsReferredFrom(*reference));
  reference->SetSceneGraph({});
  EXPECT_EQ(Take(), (Lines{"tree, old"})) << "there is no tree to name for the root";
  shown->SetUnit(2);
  EXPECT_TRUE(Take().empty());
}

TEST_F(TreeHosts, AllLeaveTheOldRootWhateverAListenerDoes) {
  Group const root = Make(), other = Make();
  Tree const shown = MakeTree(root), another = MakeTree(Make());
  Reference const a = MakeReference(shown), b = MakeReference(shown);
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
    next = edit;
    try {
      shown->SetRoot(other);
    } catch (int) {
    }
    EXPECT_FALSE(next);
    EXPECT_FALSE(root->IsReferredFrom(*a)) << &edit - edits;
    EXPECT_FALSE(root->IsReferredFrom(*b)) << &edit - edits;
    EXPECT_TRUE(other->IsReferredFrom(*a));
    EXPECT_TRUE(b->GetSceneGraph()->GetRoot()->IsReferredFrom(*b));
  }
  // A listener of the reference gives the tree that it leaves another root.
  shown->SetRoot(root);
  EXPECT_TRUE(root->IsReferredFrom(*a));
  next = [&] { shown->SetRoot(other); };
  a->SetSceneGraph(another);
  EXPECT_FALSE(root->IsReferredFrom(*a));
}

TEST_F(TreeHosts, AHandlerOfALateMeetingMaySetAnotherTree) {
  Tree const shown[] = {MakeTree(Make()), MakeTree(Make()), MakeTree(Make())};
  for (bool const sets : {false, true}) {
    Reference const host = MakeReference(shown[0]);
    EXPECT_TRUE(shown[0]->RemoveObserver(*host)) << "it meets its tree anew";
    next = [&] { host->SetSceneGraph(shown[1]); };
    if (sets) host->SetSceneGraph(shown[2]);
    Tree const& last = shown[sets ? 2 : 1];
    EXPECT_EQ(host->GetSceneGraph(), last);
    for (Tree const& tree : shown) EXPECT_EQ(tree->RemoveObserver(*host), tree == last);
  }
}

TEST_F(TreeHosts, SubscribeLate) {
  Group const root = Make();
  Reference const reference = Make<NSceneGraphReferenceNode>();
  {
    // A tree that nobody holds yet reads as null.
    auto* const made = new NSceneGraphTreeNode(NNodeID(), nullptr, nullptr);
    reference->SetSceneGraph(NNodeReference<NSceneGraphTreeNode>(*made));
    EXPECT_THAT(Take(), SizeIs(1));
    EXPECT_FALSE(reference->GetSceneGraph());
    EXPECT_THAT(Take(), IsEmpty());
    Tree const held(made);
    held->SetRoot(root);
    EXPECT_THAT(Take(), IsEmpty()) << "nobody is subscribed yet, and the tree has no multiplexer";
    EXPECT_EQ(reference->GetSceneGraph(), held);
    EXPECT_EQ(Take(), (Lines{"tree", "host's root", "host's root, old"}));
    EXPECT_EQ(reference->GetSceneGraph(), held);
    EXPECT_THAT(Take(), IsEmpty()) << "only once";
  }
  EXPECT_FALSE(reference->GetSceneGraph());
}

struct Scene : WorldTest {
  Group root = Make();
  Camera camera = Make<NSceneGraphCameraNode>();
  Tree shown = MakeTree(root);
  CameraPath path{camera, shown};

  Scene() {
    root->AddChild(*camera);
    Move(*camera, 0, 0, 10);
  }
};

using View = Scene;
using ClipDistances = Scene;
using CopyData = Scene;

TEST_F(View, LooksAtTheInterest) {
  EXPECT_TRUE(Near(Apply(item::GetViewMatrix(path), Vec3()), {0, 0, -10}));
  EXPECT_TRUE(Near(item::GetFocalVec(path), {0, 0, -10}));
  EXPECT_NEAR(item::GetFocalLength(path), 10, 1e-6);
  Move(*root, 3, 0, 0);
  EXPECT_TRUE(Near(item::GetFocalVec(path), {-3, 0, -10}))
      << "the position is global, and so is the interest";
  EXPECT_EQ(item::GetViewMatrix(CameraPath()), Matrix());
  EXPECT_EQ(item::GetFocalVec(CameraPath()), Vec3());
}

TEST_F(View, TiltAndStereoShift) {
  auto const lens = cameras->CreateNode();
  camera->SetCameraNode(lens);
  lens->SetVerticalTiltAngle(30);
  lens->SetStereoShiftX(0.25);
  // Turned by -30 degrees about the camera's right hand, the sight goes down: the origin moves up.
  double const angle = 30 * 3.14159265358979 / 180;
  EXPECT_TRUE(Near(Apply(item::GetViewMatrix(path), Vec3()),
                   {0.25f, static_cast<float>(10 * std::sin(angle)),
                    static_cast<float>(-10 * std::cos(angle))}));
  lens->SetProjectionType(static_cast<data::domain::camera::NProjectionType>(1));
  EXPECT_TRUE(Near(Apply(item::GetViewMatrix(path), Vec3()), {0.25f, 0, -10}));
}

TEST_F(View, HeadMountedDisplayTurnsTheHeadTowardsTheInterest) {
  Move(*camera, 10, 0, 0);
  // Forward is -x now; the eye stands half to the head's right, which is -z.
  Matrix const view = item::GetViewMatrixHMD(path, Matrix(), Vec3(0.5f, 0, 0));
  EXPECT_TRUE(Near(Apply(view, {10, 0, -0.5f}), {0, 0, 0}));
  EXPECT_TRUE(Near(Apply(view, {0, 0, -0.5f}), {0, 0, -10}));
}

TEST_F(ClipDistances, OfABox) {
  auto const clip = [&](float min, float max) {
    return item::GetClipDistances(path, Box3({-1, -1, min}, {1, 1, max}));
  };
  Move(*camera, 0, 0, 0);
  camera->SetInterestZ(-4);
  auto const inFront = clip(-10, -2);
  EXPECT_NEAR(inFront.first, 0.01001, 1e-6);
  EXPECT_NEAR(inFront.second, 10.01, 1e-5);
  auto const around = clip(-10, 5);
  EXPECT_NEAR(around.first, 0.003996, 1e-7);
  EXPECT_NEAR(around.second, 10.01, 1e-5);
  auto const empty = item::GetClipDistances(path, *shown);
  EXPECT_NEAR(empty.second, 1.001, 1e-6) << "the box from -1 to 1";
}

TEST_F(CopyData, PutsOneCameraWhereAnotherStands) {
  Camera const other = Make<NSceneGraphCameraNode>();
  Group const arm = Make();
  root->AddChild(*arm);
  arm->AddChild(*other);
  arm->SetRotationY(90);
  double translation[3] = {7, 7, 7};
  item::GetSceneGraphCameraTranslationCopyData(path, CameraPath(), translation);
  EXPECT_EQ(translation[0], 7);
  item::GetSceneGraphCameraTranslationCopyData(path, {other, shown}, translation);
  Move(*other, translation[0], translation[1], translation[2]);
  EXPECT_TRUE(Near(Apply(CameraPath(other, shown).GetGlobalTransform(), Vec3()), {0, 0, 10}));
}

}  // namespace
}  // namespace corvanta::test
