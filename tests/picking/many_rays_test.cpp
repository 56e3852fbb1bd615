#include "tests/support/world.h"

namespace corvanta::test {
namespace {

namespace picker = data::operators::ray_picker;

/// Models, some of them below others, in a tree and in one that it shows; a hundred under one
/// group.
class ManyRays : public WorldTest {
 protected:
  Random random;
  Group root = Make(), innerRoot = Make();
  Tree shown = MakeTree(root), inner = MakeTree(innerRoot);
  Pointer<NSceneNode> scene = scenes->CreateNode();

  float Any() { return std::uniform_real_distribution<float>(-1, 1)(random); }
  Vec3 AnyPoint(float reach) {
    float const x = Any(), y = Any();
    return Vec3(x, y, Any()) * reach;
  }

  void SetUp() override {
    scene->SetSceneGraph(shown);
    inner->SetUnit(0.5);
    std::vector<Item> parents{root, root, root, innerRoot};
    for (int i = 0; i != 500; ++i) {
      Vec3 const corner = AnyPoint(0.3f);
      Item const made = i % 25 == 0   ? Item(MakeReference(inner))
                        : i % 10 == 0 ? Item(Make())
                                      : Item(MakeModel(-corner, corner));
      Move(*made, 2 * Any(), 2 * Any(), 2 * Any());
      made->SetRotationY(180 * Any());
      if (i % 40 == 3) made->SetTransformIsAbsoluteFlag(true);
      if (i % 30 == 4) made->SetIsVisibleFlag(false);
      Item const& parent = i % 25 == 0 ? root : parents[random() % parents.size()];
      parent->AddChild(*made);
      if (i % 25 != 0 && i % 7 == 0) parents.push_back(made);
    }
  }

  std::vector<Line> MakeRays(std::size_t count) {
    std::vector<Line> rays;
    for (std::size_t i = 0; i != count; ++i) {
      // Neighbours, and now and then one from elsewhere; one that isn't a ray.
      Vec3 const from = i % 5 == 0 ? AnyPoint(4) : Vec3(0, 0, 6);
      rays.emplace_back(from, i == 77 ? from : AnyPoint(1.5f));
    }
    return rays;
  }
};

TEST_F(ManyRays, EachHitsWhatItHitsAlone) {
  std::vector<Line> const rays = MakeRays(700);
  std::vector<picker::RayHits> hits(3);
  EXPECT_TRUE(picker::PickDetail(*scene, rays, hits));
  ASSERT_EQ(hits.size(), rays.size());
  std::size_t count = 0;
  for (std::size_t i = 0; i != rays.size(); ++i) {
    NRayPicker alone;
    alone.SetRay(rays[i]);
    scene->Accept(alone);
    alone.SortWithDistance();
    alone.CheckDetail();
    ASSERT_EQ(hits[i].points.size(), alone.GetPickCount()) << "ray " << i;
    ASSERT_EQ(hits[i].paths.size(), alone.GetPickCount());
    for (unsigned long k = 0; k != alone.GetPickCount(); ++k) {
      EXPECT_EQ(hits[i].points[k], alone.GetAbsHitPoint(k)) << "ray " << i;
      EXPECT_TRUE(hits[i].paths[k] == alone.GetItemPath(k)) << "ray " << i;
    }
    count += alone.GetPickCount();
  }
  EXPECT_GT(count, 500u);
  EXPECT_FALSE(picker::PickDetail(*scene, std::vector<Line>(), hits));
  EXPECT_THAT(hits, IsEmpty());
}

TEST_F(ManyRays, EachHasItsOwnDistanceToThePlane) {
  std::vector<Line> const rays = MakeRays(100);
  NRayPicker together;
  together.SetRays(rays);
  together.SetPlane(Plane(Vec3(0, 0, 1), 0.5));
  together.SetPickFromPlane(true);
  scene->Accept(together);
  together.CheckDetail();
  unsigned long at = 0;
  for (std::size_t i = 0; i != rays.size(); ++i) {
    NRayPicker alone;
    alone.SetRay(rays[i]);
    alone.SetPlane(Plane(Vec3(0, 0, 1), 0.5));
    alone.SetPickFromPlane(true);
    scene->Accept(alone);
    alone.CheckDetail();
    for (unsigned long k = 0; k != alone.GetPickCount(); ++k, ++at) {
      ASSERT_LT(at, together.GetPickCount());
      EXPECT_EQ(together.GetRayIndex(at), i);
      EXPECT_EQ(together.GetModelNode(at), alone.GetModelNode(k));
      EXPECT_EQ(together.GetDistance(at), alone.GetDistance(k));
    }
  }
  EXPECT_EQ(at, together.GetPickCount());
  EXPECT_GT(at, 20u);
}

TEST_F(ManyRays, APointIsVisibleIfNoTriangleComesBeforeIt) {
  Vec3 const from(0, 0, 6);
  std::vector<Vec3> points;
  std::vector<bool> expected;
  for (int i = 0; i != 600; ++i) {
    Vec3 const target = AnyPoint(1.5f);
    NRayPicker pick;
    pick.SetRay(Line(from, target));
    scene->Accept(pick);
    pick.CheckDetail();
    EXPECT_EQ(picker::HitsAnything(*scene, Line(from, target)), pick.GetPickCount() != 0);
    // From a point outside of all models the nearest hit comes first; the point itself is visible.
    Vec3 const nearest = pick.GetPickCount() == 0 ? target : pick.GetAbsHitPoint(0);
    float const at[] = {0.5f, 1, 1.01f};
    float const factor = at[i % 3];
    points.push_back(from + (nearest - from) * factor);
    expected.push_back(pick.GetPickCount() == 0 || factor <= 1);
    EXPECT_EQ(picker::IsVisible(*scene, from, points.back()), expected.back()) << "point " << i;
  }
  EXPECT_EQ(picker::AreVisible(*scene, from, points), expected);
  EXPECT_GT(std::count(expected.begin(), expected.end(), false), 50);
  EXPECT_TRUE(picker::IsVisible(*scene, from, from)) << "there is nothing between";
}

TEST_F(ManyRays, ATriangleBehindTheOriginHidesNothing) {
  Group const alone = Make();
  Model const model = MakeModel({-1, -1, 0}, {1, 1, 0});
  auto const surface = *model->GetGeometryNode()->GetSurfaces().begin();
  std::vector<float> const coords{-1, -1, 9, 1, -1, 9, 0, 1, 9, -1, -1, 0, 1, -1, 0, 0, 1, 0};
  surface->Assign(coords, coords, {0, 1, 2, 3, 4, 5}, {});
  alone->AddChild(*model);
  shown->SetRoot(alone);
  // A pick drops the model, whose nearest triangle lies behind.
  EXPECT_FALSE(picker::IsVisible(*scene, {0, 0, 6}, {0, 0, -1}));
  EXPECT_TRUE(picker::IsVisible(*scene, {0, 0, 6}, {0, 0, 1}));
  EXPECT_TRUE(picker::HitsAnything(*scene, Line({0, 0, 6}, {0, 0, 0})));
  EXPECT_FALSE(picker::HitsAnything(*scene, Line({0, 0, -1}, {0, 0, -2})));
}

}  // namespace
}  // namespace corvanta::test
