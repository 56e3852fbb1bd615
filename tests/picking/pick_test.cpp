#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/data/operators/ray_picker/detail/least_hit.h"
#include "tests/support/world.h"

namespace corvanta::test {
namespace {

namespace picker = data::operators::ray_picker;

class Pick : public WorldTest {
 protected:
  Group root = Make();
  Tree shown = MakeTree(root);
  Pointer<NSceneNode> scene = scenes->CreateNode();
  std::vector<picker::ModelPath> paths;
  std::vector<Vec3> points;
  Vec2 const middle{0.5f, 0.5f};

  void SetUp() override { scene->SetSceneGraph(shown); }

  /// Gives a model these triangles.
  static void Assign(Model const& model, std::vector<float> const& coords,
                     std::vector<unsigned> const& indices) {
    (*model->GetGeometryNode()->GetSurfaces().begin())->Assign(coords, coords, indices, {});
  }
  /// A square of two triangles facing z, at `z`.
  Model MakeSquare(float z, float size = 1) const {
    Model model = MakeModel();
    Assign(model, {-size, -size, z, size, -size, z, size, size, z, -size, size, z},
           {0, 1, 2, 0, 2, 3});
    return model;
  }
  /// Straight down z: the unit square of the view is x and y from -1 to 1, z from 10 to -10.
  bool PickAt(float x, float y) {
    paths.clear();
    points.clear();
    Vec2 const point((x + 1) / 2, (y + 1) / 2);
    return picker::PickDetail(*scene, &point, &view, paths, points);
  }
  Matrix view{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -0.05f, 0, 0, 0, 0.5f, 1};
};

TEST_F(Pick, NearestFirstAndHiddenNever) {
  Model const far = MakeSquare(-3), near = MakeSquare(2), hidden = MakeSquare(5);
  Group const group = Make();
  for (Model const& model : {far, near, hidden}) root->AddChild(*model);
  root->AddChild(*group);
  Model const below = MakeSquare(1);
  hidden->AddChild(*below);
  hidden->SetIsVisibleFlag(false);
  ASSERT_TRUE(PickAt(0.5f, 0.25f));
  ASSERT_EQ(paths.size(), 2u);
  EXPECT_EQ(paths[0].GetNode(), near);
  EXPECT_EQ(paths[1].GetNode(), far);
  EXPECT_TRUE(Near(points[0], {0.5f, 0.25f, 2}));
  EXPECT_TRUE(IsValid(paths[0]));
  hidden->SetIsVisibleFlag(true);
  ASSERT_TRUE(PickAt(0, 0));
  EXPECT_EQ(paths.size(), 4u);
  EXPECT_FALSE(PickAt(3, 3));
}

TEST_F(Pick, AnItemThatASilentWriteMadeAbsoluteIsMetWhereItStandsNow) {
  Group const group = Make();
  group->SetTranslationX(10);
  Model const model = MakeSquare(0), other = MakeSquare(1);
  other->SetTranslationX(-20);
  for (Model const& child : {model, other}) group->AddChild(*child);
  root->AddChild(*group);
  EXPECT_FALSE(PickAt(0, 0));
  model->QueryAttribute(item::AN_TRANSFORM_IS_ABSOLUTE)->SetValue(true, false);
  EXPECT_TRUE(PickAt(0, 0));
  EXPECT_EQ(paths.front().GetNode(), model);
}

TEST_F(Pick, TheRootStandsForItsChildrenAlone) {
  Model const model = MakeSquare(0);
  shown->SetRoot(model);
  EXPECT_FALSE(PickAt(0, 0));
  std::vector<NSceneGraphModelNode const*> models;
  Line const line({0, 0, 5}, {0, 0, 0});
  EXPECT_TRUE(picker::PickModel(*model, &line, models));
  EXPECT_EQ(models, (std::vector<NSceneGraphModelNode const*>{model.get()}));
  EXPECT_FALSE(picker::PickModel(*model, nullptr, models));
  shown->SetRoot({});
  EXPECT_FALSE(PickAt(0, 0));
}

TEST_F(Pick, AModelWhoseNearestTriangleLiesBehindDropsOut) {
  Model const both = MakeSquare(20);  // behind the origin at z = 10
  std::vector<float> const coords{-1, -1, 20, 1, -1, 20, 0, 1, 20, -1, -1, 0, 1, -1, 0, 0, 1, 0};
  Assign(both, coords, {0, 1, 2, 3, 4, 5});
  root->AddChild(*both);
  EXPECT_FALSE(PickAt(0, 0));
}

TEST_F(Pick, AreaAndPlaneModes) {
  Model const first = MakeSquare(2), second = MakeSquare(-2);
  root->AddChild(*first);
  root->AddChild(*second);
  auto const inArea = [&](Box3 const& area) {
    paths.clear();
    return picker::PickDetailInArea(*scene, &middle, &view, area, paths, points);
  };
  EXPECT_TRUE(inArea(Box3({-1, -1, -3}, {1, 1, -1})));
  ASSERT_EQ(paths.size(), 1u);
  EXPECT_EQ(paths[0].GetNode(), second);
  EXPECT_FALSE(inArea(Box3()));
  auto const fromPlane = [&](Plane const& plane) {
    paths.clear();
    points.clear();
    return picker::PickDetailFromPlane(*scene, &middle, &view, plane, paths, points);
  };
  EXPECT_TRUE(fromPlane(Plane(Vec3(0, 0, 1), 1.0)));
  ASSERT_EQ(paths.size(), 1u);
  EXPECT_EQ(paths[0].GetNode(), second);
  ASSERT_EQ(points.size(), 2u);
  EXPECT_TRUE(Near(points[1], {0, 0, 1}));
  EXPECT_FALSE(fromPlane(Plane(Vec3(1, 0, 0), 7.0))) << "parallel: nothing lies beyond it";
}

TEST_F(Pick, ImpossibleRaysMiss) {
  root->AddChild(*MakeSquare(0));
  Group const flat = Make();
  flat->SetScaleZ(0);
  flat->AddChild(*MakeSquare(0));
  root->AddChild(*flat);
  Matrix singular;
  singular.SetScale(Vec3(0, 0, 0));
  Vec2 const nowhere(static_cast<float>(kNaN), 0);
  EXPECT_FALSE(picker::PickDetail(*scene, &middle, &singular, paths, points));
  EXPECT_FALSE(picker::PickDetail(*scene, &nowhere, &view, paths, points));
  std::vector<NSceneGraphModelNode const*> models;
  for (auto const& [at, matrix] :
       {std::pair<Vec2 const*, Matrix const*>(nullptr, &view), {&middle, nullptr}}) {
    EXPECT_FALSE(picker::PickDetail(*scene, at, matrix, paths, points));
    EXPECT_FALSE(picker::PickDetail(*scene, at, matrix, models));
    EXPECT_FALSE(
        picker::PickDetailInArea(*scene, at, matrix, Box3({-1, -1, -1}, {1, 1, 1}), paths, points));
    EXPECT_FALSE(
        picker::PickDetailFromPlane(*scene, at, matrix, Plane(Vec3(0, 0, 1), 1.0), paths, points));
  }
  Line const still({0, 0, 5}, {0, 0, 5});
  EXPECT_FALSE(picker::PickModel(*root, &still, models));
  EXPECT_TRUE(PickAt(0, 0));
  EXPECT_EQ(paths.size(), 1u);
}

TEST_F(Pick, InPerspectiveAndOfAnItemInTwoLists) {
  Model const square = MakeSquare(0, 8);
  Group const former = Make();
  for (Group const& group : {former, Make()}) root->AddChild(*group);
  former->AddChild(*square);
  root->AddChild(*square, 0);  // its former parent keeps it in its list
  view = platform::MatrixLookAtRH({0, 0, 10}, {}, {0, 1, 0});
  view.MultRight(platform::MatrixPerspectiveOffCenterRH(-1, 1, -1, 1, 1, 100));
  ASSERT_TRUE(PickAt(0.5f, -0.25f));
  EXPECT_EQ(paths.size(), 2u);
  EXPECT_TRUE(Near(points[0], {5, -2.5f, 0}));
}

TEST_F(Pick, ATreeThatShowsItselfAndADeepOneEnd) {
  root->AddChild(*MakeReference(shown));
  Item nested = MakeSquare(3);
  for (int i = 0; i != 20000; ++i) {
    Group const top = Make();
    top->AddChild(*nested);
    nested = MakeReference(MakeTree(top));
  }
  root->AddChild(*nested);
  Group last = root;
  for (int i = 0; i != 100000; ++i) {
    Group next = Make();
    last->AddChild(*next);
    last = next;
  }
  last->AddChild(*MakeSquare(1));
  ASSERT_TRUE(PickAt(0, 0));
  ASSERT_EQ(paths.size(), 2u);
  EXPECT_EQ(paths[0].GetCheckPoints().size(), 20000u);
}

TEST_F(Pick, ReadOutsAreThereAfterAWalkFromAnItem) {
  Model const model = MakeSquare(-3), own = MakeSquare(5);
  Group const inner = Make();
  inner->AddChild(*model);
  Reference const reference = MakeReference(MakeTree(inner));
  reference->AddChild(*own);
  NRayPicker walk;
  walk.SetRay(Line({0, 0, 10}, {0, 0, 0}));
  reference->Accept(walk);
  NRayPicker const& found = walk;
  EXPECT_EQ(found.GetPickCount(), 2u);
  EXPECT_EQ(found.GetCheckPoints(0), (scenegraph::NCheckPoints{*reference}));
  walk.CheckDetail();
  EXPECT_EQ(found.GetModelNode(0), own.get());
  EXPECT_EQ(found.GetDistance(0), 5);
  EXPECT_TRUE(found.GetCheckPoints(0).empty());
  EXPECT_EQ(found.GetDistance(1), 13);
  EXPECT_EQ(found.GetCheckPoints(1), (scenegraph::NCheckPoints{*reference}));
  EXPECT_TRUE(Near(found.GetAbsHitPoint(1), {0, 0, -3}));
  EXPECT_TRUE(Near(found.GetLocalHitPoint(1), {0, 0, -3}));
  EXPECT_FALSE(found.GetItemPath(1).GetTreeRef());
  found.DebugOutPut();
}

TEST_F(Pick, EqualDistancesStayInTheOrderOfTheWalk) {
  std::vector<NSceneGraphModelNode const*> expected, models;
  for (int i = 0; i != 40; ++i) {
    Model const model = MakeSquare(0);
    // Boxes of other depths: what a vertex without a triangle makes of them.
    auto const depth = static_cast<float>(i * 7 % 5);
    std::vector<float> const coords{-1, -1, 0, 1, -1, 0, 0, 1, 0, 0, 0, depth};
    Assign(model, coords, {0, 1, 2});
    root->AddChild(*model);
    expected.push_back(model.get());
  }
  ASSERT_TRUE(picker::PickDetail(*scene, &middle, &view, models));
  EXPECT_EQ(models, expected);
}

TEST_F(Pick, TheControlTransformIsThatOfTheLastScenesTree) {
  Group const group = Make();
  Model const absolute = MakeSquare(0, 4);
  absolute->SetTransformIsAbsoluteFlag(true);
  group->AddChild(*absolute);
  auto const empty = scenes->CreateNode();
  NRayPicker walk;
  walk.SetRay(Line({3, 3, 10}, {3, 3, 0}));
  // The group's box is computed with the control transform that the picker has.
  auto const picks = [&] {
    absolute->SetTranslationX(0);
    auto const before = walk.GetPickCount();
    group->Accept(walk);
    return walk.GetPickCount() != before;
  };
  scene->Accept(walk);
  EXPECT_TRUE(picks());
  shown->SetUnit(0.1);
  EXPECT_FALSE(picks()) << "the tree's as it is now";
  empty->Accept(walk);
  EXPECT_TRUE(picks()) << "no tree: the identity";
}

TEST_F(Pick, APlaneThatIsMissedLeavesThePlaneHit) {
  NRayPicker walk;
  walk.SetRay(Line({0, 0, 10}, {0, 0, 0}));
  EXPECT_EQ(walk.GetPlaneHit(), Vec3());
  walk.SetPlane(Plane(Vec3(0, 0, 1), 4.0));
  Vec3 const hit = walk.GetPlaneHit();
  EXPECT_TRUE(Near(hit, {0, 0, 4}));
  walk.SetPlane(Plane(Vec3(1, 0, 0), 7.0));
  EXPECT_EQ(walk.GetPlaneHit(), hit);
}

TEST_F(Pick, EndsBeyondItsBudgetAsIfItHadNotBegun) {
  Model const model = MakeSquare(0);
  Group top = Make();
  top->AddChild(*model);
  Tree doubled = MakeTree(top);
  for (int level = 0; level != 26; ++level) {
    top = Make();
    for (int i = 0; i != 2; ++i) top->AddChild(*MakeReference(doubled));
    top->GetChildren().front()->SetTranslationZ(-1);
    doubled = MakeTree(top);
  }
  Group const other = Make();
  other->AddChild(*MakeSquare(1));
  core::detail::ScopeExit const reset(
      [] { scenegraph::SetWalkBudget(scenegraph::kDefaultWalkBudget); });
  scenegraph::SetWalkBudget(1000);
  NRayPicker walk;
  walk.SetRay(Line({0, 0, 10}, {0, 0, 0}));
  scene->SetSceneGraph(MakeTree(other));
  scene->Accept(walk);
  auto const path = walk.GetItemPath(0);
  scene->SetSceneGraph(doubled);
  EXPECT_THROW(scene->Accept(walk), scenegraph::NSceneGraphWalkError);
  EXPECT_THROW(PickAt(0, 0), scenegraph::NSceneGraphWalkError);
  EXPECT_EQ(walk.GetPickCount(), 1u);
  EXPECT_TRUE(walk.GetItemPath(0) == path) << "the first scene's tree";
  other->Accept(walk);
  walk.CheckDetail();
  ASSERT_EQ(walk.GetPickCount(), 2u);
  EXPECT_EQ(walk.GetDistance(0), 9);
  EXPECT_EQ(walk.GetDistance(1), 9) << "no matrix of the walk that ended is left";
  EXPECT_TRUE(walk.GetCheckPoints(1).empty());
}

/// A walk written down as it reads, without index, worklist or judging by parents' boxes.
struct NaiveWalk {
  struct Hit {
    double distance;
    Vec3 point;
    NSceneGraphModelNode const* model;
    std::vector<NSceneGraphReferenceNode const*> through;
  };
  Line ray;
  std::vector<Matrix> stack{Matrix()}, controls{Matrix()};
  std::vector<NSceneGraphReferenceNode const*> through;
  std::vector<Hit> hits;

  void Push(NSceneGraphItemNode const& at) {
    stack.push_back(at.TransformIsAbsolute() ? at.GetTransform()
                                             : at.GetTransform() * stack.back());
  }
  void Local(Vec3& o, Vec3& d) const {
    Matrix const inverse = stack.back().Inverse();
    inverse.MultVecMatrix(ray.GetOrigin(), o);
    inverse.MultDirMatrix(ray.GetDirection(), d);
  }
  bool MeetsBox(NSceneGraphItemNode const& at) const {
    Box3 const& box = at.GetBoundingBox(stack.back(), controls.back());
    if (box.IsEmpty()) return false;
    Vec3 o, d;
    Local(o, d);
    double enter = -0.0001, leave = std::numeric_limits<double>::max();
    for (int i = 0; i != 3; ++i) {
      double t1 = (double(box.min[i]) - o[i]) / d[i], t2 = (double(box.max[i]) - o[i]) / d[i];
      if (t1 > t2) std::swap(t1, t2);
      if (enter < t1) enter = t1;
      if (leave > t2) leave = t2;
      if (enter > leave || 0 > leave) return false;
    }
    return true;
  }
  void VisitTree(NSceneGraphTreeNode const& at) {
    auto const root = at.GetRoot();
    if (!root) return;
    stack.push_back(at.GetControlTransform() * stack.back());
    Push(*root);
    if (MeetsBox(*root)) VisitChildren(*root);
    stack.resize(stack.size() - 2);
  }
  void VisitChildren(NSceneGraphItemNode const& at) {
    for (auto const& child : at.GetChildren()) Visit(*child);
  }
  void Visit(NSceneGraphItemNode const& at) {
    if (auto const* reference = dynamic_cast<NSceneGraphReferenceNode const*>(&at)) {
      Push(at);
      stack.push_back(controls.back().Inverse() * stack.back());
      through.push_back(reference);
      controls.push_back(reference->GetSceneGraph()->GetControlTransform());
      VisitTree(*reference->GetSceneGraph());
      controls.pop_back();
      through.pop_back();
      stack.pop_back();
      VisitChildren(at);
      stack.pop_back();
      return;
    }
    if (!at.IsVisible()) return;
    Push(at);
    auto const* model = dynamic_cast<NSceneGraphModelNode const*>(&at);
    if (model != nullptr || MeetsBox(at)) VisitChildren(at);
    if (model != nullptr && MeetsBox(at)) Test(*model);
    stack.pop_back();
  }
  void Test(NSceneGraphModelNode const& model) {
    Vec3 o, d;
    Local(o, d);
    double const t = picker::detail::FindLeastHitExhaustively(
        **model.GetGeometryNode()->GetSurfaces().begin(), o, d, [](float) { return true; });
    if (t == std::numeric_limits<double>::max() || t < 0) return;
    Vec3 point;
    stack.back().MultVecMatrix(o + d * static_cast<float>(t), point);
    hits.push_back({t, point, &model, through});
  }
};

TEST_F(Pick, AgainstANaiveWalkUnderRandomEdits) {
  Random random;
  std::uniform_real_distribution<float> any(-1, 1);
  Group const innerRoot = Make();
  Tree const inner = MakeTree(innerRoot);
  inner->SetUnit(0.5);
  inner->SetCoordConversion(tree::CCV_ZUP_TO_YUP);
  std::vector<Item> all[2] = {{root}, {innerRoot}};
  for (int i = 0; i != 160; ++i) {
    auto& among = all[i % 2];
    Item made = i % 5 == 0 ? Item(Make()) : Item(MakeSquare(any(random), 0.5f));
    if (i % 40 == 2) made = MakeReference(inner);
    among[random() % std::min<std::size_t>(among.size(), 12)]->AddChild(*made);
    among.push_back(made);
  }
  std::size_t hitCount = 0;
  for (int step = 0; step != 400; ++step) {
    auto& among = all[random() % 2];
    Item const& edited = among[1 + random() % (among.size() - 1)];
    switch (random() % 5) {
      case 0:
        Move(*edited, any(random), any(random), any(random));
        break;
      case 1:
        edited->SetRotationX(180 * any(random));
        break;
      case 2:
        edited->SetScaleY(step % 50 == 0 ? 1e-4 : 1 + 0.9 * any(random));
        break;
      case 3:
        edited->SetIsVisibleFlag(random() % 5 != 0);
        break;
      default:
        edited->SetTransformIsAbsoluteFlag(random() % 20 == 0);
        break;
    }
    for (int ray = 0; ray != 10; ++ray) {
      float const reach = ray == 0 ? 1000.0f : 3.0f;
      Line const line(Vec3(any(random), any(random), any(random)) * reach,
                      Vec3(any(random), any(random), any(random)));
      NaiveWalk naive;
      naive.ray = line;
      naive.controls.front() = shown->GetControlTransform();
      naive.VisitTree(*shown);
      NRayPicker found;
      found.SetRay(line);
      scene->Accept(found);
      found.SortWithDistance();
      found.CheckDetail();
      ASSERT_EQ(found.GetPickCount(), naive.hits.size()) << "step " << step;
      for (unsigned long i = 0; i != found.GetPickCount(); ++i) {
        bool const isThere =
            std::any_of(naive.hits.begin(), naive.hits.end(), [&](auto const& hit) {
              return hit.model == found.GetModelNode(i) && hit.point == found.GetAbsHitPoint(i) &&
                     hit.through.size() == found.GetItemPath(i).GetCheckPoints().size();
            });
        ASSERT_TRUE(isThere) << "step " << step << ", hit " << i;
      }
      hitCount += naive.hits.size();
    }
  }
  EXPECT_GT(hitCount, 500u);
}

TEST_F(Pick, AMeshThatIsPickedOftenGivesTheSameHits) {
  std::vector<float> coords;
  std::vector<unsigned> indices;
  constexpr unsigned kSide = 40;
  for (unsigned i = 0; i != kSide * kSide; ++i) {
    float const x = static_cast<float>(i % kSide) / 20 - 1,
                y = static_cast<float>(i / kSide) / 20 - 1;
    coords.insert(coords.end(), {x, y, 0.2f * std::sin(9 * x) * std::cos(7 * y)});
    if (i % kSide == kSide - 1 || i / kSide == kSide - 1) continue;
    indices.insert(indices.end(), {i, i + 1, i + kSide, i + 1, i + kSide + 1, i + kSide});
  }
  Model const model = MakeSquare(0);
  auto const surface = *model->GetGeometryNode()->GetSurfaces().begin();
  surface->Assign(coords, coords, indices, {});
  root->AddChild(*model);
  std::vector<Vec3> first;
  for (int round = 0; round != 3; ++round) {
    for (int i = 0; i != 12; ++i) {
      ASSERT_TRUE(PickAt(0.07f * static_cast<float>(i) - 0.4f, 0.31f));
      if (round == 0) {
        first.push_back(points[0]);
      } else {
        EXPECT_EQ(points[0], first[static_cast<std::size_t>(i)]);
      }
    }
  }
  for (std::size_t z = 2; z < coords.size(); z += 3) coords[z] += 0.125f;
  auto const isNewHit = [&] {
    return PickAt(0.02f, 0.31f) && Near(points[0], first[6] + Vec3(0, 0, 0.125f));
  };
  // A listener of a node that holds the surface too picks, and throws.
  auto const before = geometries->CreateNode();
  before->AddSurface(*surface);
  auto const after = geometries->CreateNode();
  after->AddSurface(*surface);
  model->SetGeometryNode(after);
  for (int i = 0; i != 12; ++i) ASSERT_TRUE(PickAt(0.02f, 0.31f));
  auto const log = Listen();
  log->react = [&](NSignal const& signal) {
    if (signal.node != before.get()) return;
    EXPECT_TRUE(isNewHit());
    throw 1;
  };
  EXPECT_THROW(surface->Assign(coords, coords, indices, {}), int);
  EXPECT_TRUE(isNewHit()) << "the index of the old arrays is gone";
}

}  // namespace
}  // namespace corvanta::test
