#include "tests/support/test.h"

namespace corvanta::data::switches {
namespace {

using domain::scenegraph::item::NSceneGraphCameraNode;
using domain::scenegraph::item::NSceneGraphItemDomain;
using CameraPath = domain::scenegraph::NSceneGraphPath<NSceneGraphCameraNode>;

TEST(Switches, InsertBeforeTheIndexAndRefuseBeyondTheEnd) {
  Pointer<NSceneGraphItemDomain> const items(
      new NSceneGraphItemDomain(nullptr, nullptr, nullptr, nullptr, nullptr));
  auto const camera = items->CreateNode<NSceneGraphCameraNode>(NNodeID());
  CameraPath const a(*camera, {});
  CameraPath const b;
  Pointer<NCameraSwitch> const cameras(new NCameraSwitch);
  EXPECT_EQ(cameras->GetName(), L"");
  EXPECT_FALSE(cameras->AddCamera(a, 1));
  EXPECT_FALSE(cameras->RemoveCamera(0));
  EXPECT_TRUE(cameras->AddCamera(a, 0));
  EXPECT_TRUE(cameras->AddCamera(a, 1));
  EXPECT_TRUE(cameras->AddCamera(b, 1));
  EXPECT_TRUE(cameras->AddCamera(cameras->GetCameras().back(), 3));
  EXPECT_TRUE(cameras->RemoveCamera(2));
  EXPECT_FALSE(cameras->RemoveCamera(3));
  EXPECT_THAT(cameras->GetCameras(), ElementsAre(a, b, a));

  using EnvironmentRef = NNodeReference<domain::environment::NEnvironmentNode>;
  // What an entry refers to doesn't matter.
  EnvironmentRef const full(static_cast<core::node::detail::NNodeReferenceImpl const&>(
      NNodeReference<NSceneGraphCameraNode>(*camera)));
  EnvironmentRef const empty;
  Pointer<NEnvironmentSwitch> const environments(new NEnvironmentSwitch);
  EXPECT_FALSE(environments->AddEnvironment(full, 1));
  EXPECT_FALSE(environments->RemoveEnvironment(0));
  EXPECT_TRUE(environments->AddEnvironment(full, 0));
  EXPECT_TRUE(environments->AddEnvironment(empty, 0));
  EXPECT_TRUE(environments->AddEnvironment(full, 2));
  EXPECT_TRUE(environments->RemoveEnvironment(1));
  EXPECT_FALSE(environments->RemoveEnvironment(2));
  EXPECT_THAT(environments->GetEnvironments(), ElementsAre(empty, full));
}

}  // namespace
}  // namespace corvanta::data::switches
