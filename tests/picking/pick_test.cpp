#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/data/operators/ray_picker/detail/least_hit.h"
#include "tests/scenegraph/graph.h"

namespace corvanta::test {
namespace {

namespace picker = data::operators::ray_picker;
using VX_Math::Line;
using VX_Math::Plane;

struct Picked : Graph {
  Group root = Make();
  Tree shown = MakeTree(root);
  Pointer<data::domain::scene::NSceneNode> scene = scenes->CreateNode(NNodeID());
  std::vector<picker::ModelPath> paths;
  std::vector<Vec3> points;

  Picked() { scene->SetSceneGraph(shown); }

  /// A square of two triangles facing z, at `z`.
  Model MakeSquare(float z, float size = 1) {
    Model model = MakeModel({0, 0, 0}, {1, 1, 1});
    std::vector<float> const coords{-size, -size, z, size, -size, z, size, size, z, -size, size, z};
    (*model->GetGeometryNode()->GetSurfaces().begin())
        ->Assign(coords, coords, std::vector<unsigned>{0, 1, 2, 0, 2, 3}, {});
    return model;
  }
  /// Straight down z: the unit square of the view is x and y from -1 to 1, z from 10 to -10.
  bool Pick(float x, float y) {
    paths.clear();
    points.clear();
    Vec2 const point((x + 1) / 2, (y + 1) / 2);
    return picker::PickDetail(*scene, &point, &view, paths, points);
  }
  Matrix view{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -0.05f, 0, 0, 0, 0.5f, 1};
};

TEST(Pick, NearestFirstAndHiddenNever) {
  Picked world;
  Model const far = world.MakeSquare(-3), near = world.MakeSquare(2), hidden = world.MakeSquare(5);
  Group const group = world.Make();
  for (Model const& model : {far, near, hidden}) world.root->AddChild(*model);
  world.root->AddChild(*group);
  Model const below = world.MakeSquare(1);
  hidden->AddChild(*below);
  hidden->SetIsVisibleFlag(false);
  ASSERT_TRUE(world.Pick(0.5f, 0.25f));
  ASSERT_EQ(world.paths.size(), 2u);
  EXPECT_EQ(world.paths[0].GetNode(), near);
  EXPECT_EQ(world.paths[1].GetNode(), far);
  EXPECT_TRUE(Near(world.points[0], {0.5f, 0.25f, 2}));
  EXPECT_TRUE(IsValid(world.paths[0]));
  hidden->SetIsVisibleFlag(true);
  ASSERT_TRUE(world.Pick(0, 0));
  EXPECT_EQ(world.paths.size(), 4u);
  EXPECT_FALSE(world.Pick(3, 3));
}

TEST(Pick, AnItemThatASilentWriteMadeAbsoluteIsMetWhereItStandsNow) {
  Picked world;
  Group const group = world.Make();
  group->SetTranslationX(10);
  Model const model = world.MakeSquare(0), other = world.MakeSquare(1);
  other->SetTranslationX(-20);
  for (Model const& child : {model, other}) group->AddChild(*child);
  world.root->AddChild(*group);
  EXPECT_FALSE(world.Pick(0, 0));
  model->QueryAttribute(item::AN_TRANSFORM_IS_ABSOLUTE)->SetValue(true, false);
  EXPECT_TRUE(world.Pick(0, 0));
  EXPECT_EQ(world.paths.front().GetNode(), model);
}

TEST(Pick, TheRootStandsForItsChildrenAlone) {
  Picked world;
  Model const model = world.MakeSquare(0);
  world.shown->SetRoot(model);
  EXPECT_FALSE(world.Pick(0, 0));
  std::vector<item::NSceneGraphModelNode const*> models;
  Line const line({0, 0, 5}, {0, 0, 0});
  EXPECT_TRUE(picker::PickModel(*model, &line, models));
  EXPECT_EQ(models, (std::vector<item::NSceneGraphModelNode const*>{model.get()}));
  EXPECT_FALSE(picker::PickModel(*model, nullptr, models));
  world.shown->SetRoot({});
  EXPECT_FALSE(world.Pick(0, 0));
}

TEST(Pick, AModelWhoseNearestTriangleLiesBehindDropsOut) {
  Picked world;
  Model const both = world.MakeSquare(20);  // behind the origin at z = 10
  std::vector<float> const coords{-1, -1, 20, 1, -1, 20, 0, 1, 20, -1, -1, 0, 1, -1, 0, 0, 1, 0};
  (*both->GetGeometryNode()->GetSurfaces().begin())
      ->Assign(coords, coords, std::vector<unsigned>{0, 1, 2, 3, 4, 5}, {});
  world.root->AddChild(*both);
  EXPECT_FALSE(world.Pick(0, 0));
}

TEST(Pick, AreaAndPlaneModes) {
  Picked world;
  Model const first = world.MakeSquare(2), second = world.MakeSquare(-2);
  world.root->AddChild(*first);
  world.root->AddChild(*second);
  Vec2 const middle(0.5f, 0.5f);
  auto const inArea = [&](Box3 const& area) {
    world.paths.clear();
    return picker::PickDetailInArea(*world.scene, &middle, &world.view, area, world.paths,
                                    world.points);
  };
  EXPECT_TRUE(inArea(Box3({-1, -1, -3}, {1, 1, -1})));
  ASSERT_EQ(world.paths.size(), 1u);
  EXPECT_EQ(world.paths[0].GetNode(), second);
  EXPECT_FALSE(inArea(Box3()));
  auto const fromPlane = [&](Plane const& plane) {
    world.paths.clear();
    world.points.clear();
    return picker::PickDetailFromPlane(*world.scene, &middle, &world.view, plane, world.paths,
                                       world.points);
  };
  EXPECT_TRUE(fromPlane(Plane(Vec3(0, 0, 1), 1.0)));
  ASSERT_EQ(world.paths.size(), 1u);
  EXPECT_EQ(world.paths[0].GetNode(), second);
  ASSERT_EQ(world.points.size(), 2u);
  EXPECT_TRUE(Near(world.points[1], {0, 0, 1}));
  EXPECT_FALSE(fromPlane(Plane(Vec3(1, 0, 0), 7.0))) << "parallel: nothing lies beyond it";
}

TEST(Pick, ImpossibleRaysMiss) {
  Picked world;
  world.root->AddChild(*world.MakeSquare(0));
  Group const flat = world.Make();
  flat->SetScaleZ(0);
  flat->AddChild(*world.MakeSquare(0));
  world.root->AddChild(*flat);
  float const nan = std::numeric_limits<float>::quiet_NaN();
  Matrix singular;
  singular.SetScale(Vec3(0, 0, 0));
  Vec2 const middle(0.5f, 0.5f), nowhere(nan, 0);
  EXPECT_FALSE(picker::PickDetail(*world.scene, &middle, &singular, world.paths, world.points));
  EXPECT_FALSE(picker::PickDetail(*world.scene, &nowhere, &world.view, world.paths, world.points));
  std::vector<item::NSceneGraphModelNode const*> models;
  for (auto const& [point, view] :
       {std::pair<Vec2 const*, Matrix const*>(nullptr, &world.view), {&middle, nullptr}}) {
    EXPECT_FALSE(picker::PickDetail(*world.scene, point, view, world.paths, world.points));
    EXPECT_FALSE(picker::PickDetail(*world.scene, point, view, models));
    EXPECT_FALSE(picker::PickDetailInArea(*world.scene, point, view, Box3({-1, -1, -1}, {1, 1, 1}),
                                          world.paths, world.points));
    EXPECT_FALSE(picker::PickDetailFromPlane(*world.scene, point, view, Plane(Vec3(0, 0, 1), 1.0),
                                             world.paths, world.points));
  }
  Line const still({0, 0, 5}, {0, 0, 5});
  EXPECT_FALSE(picker::PickModel(*world.root, &still, models));
  EXPECT_TRUE(world.Pick(0, 0));
  EXPECT_EQ(world.paths.size(), 1u);
}

TEST(Pick, InPerspectiveAndOfAnItemInTwoLists) {
  Picked world;
  Model const square = world.MakeSquare(0, 8);
  Group const former = world.Make();
  for (Group const& group : {former, world.Make()}) world.root->AddChild(*group);
  former->AddChild(*square);
  world.root->AddChild(*square, 0);  // its former parent keeps it in its list
  world.view = platform::MatrixLookAtRH({0, 0, 10}, {}, {0, 1, 0});
  world.view.MultRight(platform::MatrixPerspectiveOffCenterRH(-1, 1, -1, 1, 1, 100));
  ASSERT_TRUE(world.Pick(0.5f, -0.25f));
  EXPECT_EQ(world.paths.size(), 2u);
  EXPECT_TRUE(Near(world.points[0], {5, -2.5f, 0}));
}

TEST(Pick, ATreeThatShowsItselfAndADeepOneEnd) {
  Picked world;
  world.root->AddChild(*world.MakeReference(world.shown));
  Item nested = world.MakeSquare(3);
  for (int i = 0; i != 20000; ++i) {
    Group const root = world.Make();
    root->AddChild(*nested);
    nested = world.MakeReference(world.MakeTree(root));
  }
  world.root->AddChild(*nested);
  Group last = world.root;
  for (int i = 0; i != 100000; ++i) {
    Group next = world.Make();
    last->AddChild(*next);
    last = next;
  }
  last->AddChild(*world.MakeSquare(1));
  ASSERT_TRUE(world.Pick(0, 0));
  ASSERT_EQ(world.paths.size(), 2u);
  EXPECT_EQ(world.paths[0].GetCheckPoints().size(), 20000u);
}

TEST(Pick, ReadOutsAreThereAfterAWalkFromAnItem) {
  Picked world;
  Model const model = world.MakeSquare(-3), own = world.MakeSquare(5);
  Group const inner = world.Make();
  inner->AddChild(*model);
  Reference const reference = world.MakeReference(world.MakeTree(inner));
  reference->AddChild(*own);
  picker::NRayPicker walk;
  walk.SetRay(Line({0, 0, 10}, {0, 0, 0}));
  reference->Accept(walk);
  picker::NRayPicker const& found = walk;
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

TEST(Pick, EqualDistancesStayInTheOrderOfTheWalk) {
  Picked world;
  std::vector<item::NSceneGraphModelNode const*> expected, models;
  for (int i = 0; i != 40; ++i) {
    Model const model = world.MakeSquare(0);
    // Boxes of other depths: what a vertex without a triangle makes of them.
    auto const depth = static_cast<float>(i * 7 % 5);
    std::vector<float> const coords{-1, -1, 0, 1, -1, 0, 0, 1, 0, 0, 0, depth};
    (*model->GetGeometryNode()->GetSurfaces().begin())
        ->Assign(coords, coords, std::vector<unsigned>{0, 1, 2}, {});
    world.root->AddChild(*model);
    expected.push_back(model.get());
  }
  Vec2 const middle(0.5f, 0.5f);
  ASSERT_TRUE(picker::PickDetail(*world.scene, &middle, &world.view, models));
  EXPECT_EQ(models, expected);
}

TEST(Pick, TheControlTransformIsThatOfTheLastScenesTree) {
  Picked world;
  Group const group = world.Make();
  Model const absolute = world.MakeSquare(0, 4);
  absolute->SetTransformIsAbsoluteFlag(true);
  group->AddChild(*absolute);
  auto const empty = world.scenes->CreateNode(NNodeID());
  picker::NRayPicker walk;
  walk.SetRay(Line({3, 3, 10}, {3, 3, 0}));
  // The group's box is computed with the control transform that the picker has.
  auto const picks = [&] {
    absolute->SetTranslationX(0);
    auto const before = walk.GetPickCount();
    group->Accept(walk);
    return walk.GetPickCount() != before;
  };
  world.scene->Accept(walk);
  EXPECT_TRUE(picks());
  world.shown->SetUnit(0.1);
  EXPECT_FALSE(picks()) << "the tree's as it is now";
  empty->Accept(walk);
  EXPECT_TRUE(picks()) << "no tree: the identity";
}

TEST(Pick, APlaneThatIsMissedLeavesThePlaneHit) {
  picker::NRayPicker walk;
  walk.SetRay(Line({0, 0, 10}, {0, 0, 0}));
  EXPECT_EQ(walk.GetPlaneHit(), Vec3());
  walk.SetPlane(Plane(Vec3(0, 0, 1), 4.0));
  Vec3 const hit = walk.GetPlaneHit();
  EXPECT_TRUE(Near(hit, {0, 0, 4}));
  walk.SetPlane(Plane(Vec3(1, 0, 0), 7.0));
  EXPECT_EQ(walk.GetPlaneHit(), hit);
}

TEST(Pick, EndsBeyondItsBudgetAsIfItHadNotBegun) {
  Picked world;
  Model const model = world.MakeSquare(0);
  Group root = world.Make();
  root->AddChild(*model);
  Tree shown = world.MakeTree(root);
  for (int level = 0; level != 26; ++level) {
    root = world.Make();
    for (int i = 0; i != 2; ++i) root->AddChild(*world.MakeReference(shown));
    root->GetChildren().front()->SetTranslationZ(-1);
    shown = world.MakeTree(root);
  }
  Tree const doubled = shown;
  Group const other = world.Make();
  other->AddChild(*world.MakeSquare(1));
  core::detail::ScopeExit const reset(
      [] { scenegraph::SetWalkBudget(scenegraph::kDefaultWalkBudget); });
  scenegraph::SetWalkBudget(1000);
  picker::NRayPicker walk;
  walk.SetRay(Line({0, 0, 10}, {0, 0, 0}));
  world.scene->SetSceneGraph(world.MakeTree(other));
  world.scene->Accept(walk);
  auto const path = walk.GetItemPath(0);
  world.scene->SetSceneGraph(doubled);
  EXPECT_THROW(world.scene->Accept(walk), scenegraph::NSceneGraphWalkError);
  EXPECT_THROW(world.Pick(0, 0), scenegraph::NSceneGraphWalkError);
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
    item::NSceneGraphModelNode const* model;
    std::vector<item::NSceneGraphReferenceNode const*> through;

    bool operator<(Hit const& other) const {
      return std::tie(distance, model, through) <
             std::tie(other.distance, other.model, other.through);
    }
  };
  Line ray;
  std::vector<Matrix> stack{Matrix()};
  std::vector<Matrix> controls{Matrix()};
  std::vector<item::NSceneGraphReferenceNode const*> through;
  std::vector<Hit> hits;

  void Push(item::NSceneGraphItemNode const& at) {
    stack.push_back(at.TransformIsAbsolute() ? at.GetTransform()
                                             : at.GetTransform() * stack.back());
  }
  void Local(Vec3& o, Vec3& d) const {
    Matrix const inverse = stack.back().Inverse();
    inverse.MultVecMatrix(ray.GetOrigin(), o);
    inverse.MultDirMatrix(ray.GetDirection(), d);
  }
  bool MeetsBox(item::NSceneGraphItemNode const& at) const {
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
  void VisitTree(tree::NSceneGraphTreeNode const& at) {
    auto const root = at.GetRoot();
    if (!root) return;
    stack.push_back(at.GetControlTransform() * stack.back());
    Push(*root);
    if (MeetsBox(*root)) VisitChildren(*root);
    stack.resize(stack.size() - 2);
  }
  void VisitChildren(item::NSceneGraphItemNode const& at) {
    for (auto const& child : at.GetChildren()) Visit(*child);
  }
  void Visit(item::NSceneGraphItemNode const& at) {
    if (auto const* reference = dynamic_cast<item::NSceneGraphReferenceNode const*>(&at)) {
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
    auto const* model = dynamic_cast<item::NSceneGraphModelNode const*>(&at);
    if (model != nullptr || MeetsBox(at)) VisitChildren(at);
    if (model != nullptr && MeetsBox(at)) Test(*model);
    stack.pop_back();
  }
  void Test(item::NSceneGraphModelNode const& model) {
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

TEST(Pick, AgainstANaiveWalkUnderRandomEdits) {
  unsigned const seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> any(-1, 1);
  Picked world;
  Group const innerRoot = world.Make();
  Tree const inner = world.MakeTree(innerRoot);
  inner->SetUnit(0.5);
  inner->SetCoordConversion(tree::CCV_ZUP_TO_YUP);
  std::vector<Item> all[2] = {{world.root}, {innerRoot}};
  for (int i = 0; i != 160; ++i) {
    auto& items = all[i % 2];
    Item made = i % 5 == 0 ? Item(world.Make()) : Item(world.MakeSquare(any(random), 0.5f));
    if (i % 40 == 2) made = world.MakeReference(inner);
    items[random() % std::min<std::size_t>(items.size(), 12)]->AddChild(*made);
    items.push_back(made);
  }
  std::size_t hitCount = 0;
  for (int step = 0; step != 400; ++step) {
    auto& items = all[random() % 2];
    Item const& edited = items[1 + random() % (items.size() - 1)];
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
      naive.controls.front() = world.shown->GetControlTransform();
      naive.VisitTree(*world.shown);
      picker::NRayPicker found;
      found.SetRay(line);
      world.scene->Accept(found);
      found.SortWithDistance();
      found.CheckDetail();
      ASSERT_EQ(found.GetPickCount(), naive.hits.size()) << "step " << step;
      std::set<NaiveWalk::Hit> const expected(naive.hits.begin(), naive.hits.end());
      for (unsigned long i = 0; i != found.GetPickCount(); ++i) {
        bool const isThere = std::any_of(expected.begin(), expected.end(), [&](auto const& hit) {
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

TEST(Pick, AMeshThatIsPickedOftenGivesTheSameHits) {
  Picked world;
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
  Model const model = world.MakeSquare(0);
  auto const surface = *model->GetGeometryNode()->GetSurfaces().begin();
  surface->Assign(coords, coords, indices, {});
  world.root->AddChild(*model);
  std::vector<Vec3> first;
  for (int round = 0; round != 3; ++round) {
    for (int i = 0; i != 12; ++i) {
      ASSERT_TRUE(world.Pick(0.07f * static_cast<float>(i) - 0.4f, 0.31f));
      if (round == 0) {
        first.push_back(world.points[0]);
      } else {
        EXPECT_EQ(world.points[0], first[static_cast<std::size_t>(i)]);
      }
    }
  }
  for (std::size_t z = 2; z < coords.size(); z += 3) coords[z] += 0.125f;
  auto const isNewHit = [&] {
    return world.Pick(0.02f, 0.31f) && Near(world.points[0], first[6] + Vec3(0, 0, 0.125f));
  };
  // A listener of a node that holds the surface too picks, and throws.
  auto const before = world.geometries->CreateNode(NNodeID());
  before->AddSurface(*surface);
  auto const after = world.geometries->CreateNode(NNodeID());
  after->AddSurface(*surface);
  model->SetGeometryNode(after);
  for (int i = 0; i != 12; ++i) ASSERT_TRUE(world.Pick(0.02f, 0.31f));
  struct Listener : data::domain::geometry::NGeometryChangeListener {
    std::function<void()> run;
    void OnGeometryChangeImpl(data::domain::geometry::NGeometryNode const&,
                              data::domain::geometry::NSurface const&,
                              data::domain::geometry::NGeometryChangeType) override {
      run();
    }
  };
  Pointer<Listener> const listener(new Listener);
  before->AddObserver(*listener);
  listener->run = [&] {
    EXPECT_TRUE(isNewHit());
    throw 1;
  };
  EXPECT_THROW(surface->Assign(coords, coords, indices, {}), int);
  EXPECT_TRUE(isNewHit()) << "the index of the old arrays is gone";
}

}  // namespace
}  // namespace corvanta::test
