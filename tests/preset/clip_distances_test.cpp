#include "tests/preset/view_world.h"
#include "tests/support/temporary_files.h"

namespace corvanta::test {
namespace {

using Distances = std::pair<double, double>;

class ViewClipDistances : public testing::Test, protected ViewWorld {
 protected:
  ~ViewClipDistances() override { data::internal::Uninitialize(manager); }
  Distances Get() const { return item::GetClipDistances(GetPath(), *view); }
  Distances GetFor(Vec3 const& min, Vec3 const& max) const {
    return item::GetClipDistances(GetPath(), Box3(min, max));
  }

  support::TemporaryFiles const m_files;
};

TEST_F(ViewClipDistances, AreZeroWhereSomethingIsMissing) {
  Model const surroundings = MakeModel({-1, -1, -1}, {1, 1, 1});
  Move(*camera, 0, 0, 5);
  EXPECT_EQ(Get(), Distances(0, 0));  // no model of the environment
  environment->SetEnvironmentMapModel(surroundings);
  EXPECT_GT(Get().second, 0);
  scene->SetEnvironment({});
  EXPECT_EQ(Get(), Distances(0, 0));
  scene->SetEnvironment(environment);
  scene->SetSceneGraph({});
  EXPECT_EQ(Get(), Distances(0, 0));
  view->SetScene({});
  EXPECT_EQ(Get(), Distances(0, 0));
}

TEST_F(ViewClipDistances, TakeInTheEnvironmentOnBothSidesOfTheFloor) {
  Move(*camera, 3, 40, 60);
  root->AddChild(*MakeModel({-2, -1, -2}, {2, 25, 1}));
  struct Row {
    float low, high, y;  // of the model, and what it adds
  };
  // About the floor, above it, reaching deeper than high, and below it.
  for (Row const& row : {Row{-10, 10, 10.5f}, {5, 10, 10.5f}, {-90, 20, 21}, {-40, -20, 21}}) {
    SCOPED_TRACE(row.low);
    Model const model = MakeModel({-10, row.low, 0}, {10, row.high, 30});
    environment->SetEnvironmentMapModel(model);
    float const top = std::max(row.y, 25.0f);
    EXPECT_EQ(Get(), GetFor({-10.5f, -row.y, -2}, {10.5f, top, 31.5f}));
    model->SetScaleX(2);
    model->SetTranslationZ(-10);
    EXPECT_EQ(Get(), GetFor({-21, -row.y, -10.5f}, {21, top, 21}));
  }
  // A model without a shape adds nothing.
  environment->SetEnvironmentMapModel(Make<item::NSceneGraphModelNode>());
  EXPECT_EQ(Get(), GetFor({-2, -1, -2}, {2, 25, 1}));
}

TEST_F(ViewClipDistances, TakeInThePosturesOfTheCamerasManager) {
  environment->SetEnvironmentMapModel(MakeModel({-1, -1, -1}, {1, 1, 1}));
  Move(*camera, 0, 0, 100);
  auto const without = GetFor({-1.05f, -1.05f, -1.05f}, {1.05f, 1.05f, 1.05f});
  EXPECT_EQ(Get(), without);
  ASSERT_TRUE(data::internal::Initialize(manager, *events));
  EXPECT_EQ(Get(), without);  // no postures yet
  auto* const postures = data::internal::GetPostureSceneRoot(manager);
  auto const handle = data::internal::GetInternalSceneGraphItemDomain(manager)
                          ->CreateNode<item::NSceneGraphModelNode>(NNodeID());
  handle->SetGeometryNode(data::internal::GetSphere(manager));
  handle->SetTranslationZ(-300);
  ASSERT_TRUE(postures->AddChild(*handle));
  EXPECT_EQ(Get(), GetFor({-1.05f, -1.05f, -301}, {1.05f, 1.05f, 1.05f}));
  // Without a camera item there is no manager to ask, and the view matrix is the identity.
  scenegraph::NSceneGraphPath<item::NSceneGraphCameraNode> const none;
  EXPECT_EQ(item::GetClipDistances(none, *view),
            item::GetClipDistances(none, Box3({0, 0, -1.05f}, {0, 0, 1.05f})));
  root->RemoveChild(*camera);
  EXPECT_ANY_THROW(Get());  // the path is broken
}

}  // namespace
}  // namespace corvanta::test
