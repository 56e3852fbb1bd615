#include "tests/support/world.h"

namespace corvanta::data::domain::scene {
namespace {

using environment::NEnvironmentNode;
using scenegraph::tree::NSceneGraphTreeHost;
using scenegraph::tree::NSceneGraphTreeNode;
using Environment = Pointer<NEnvironmentNode>;

class Recorder final : public events::scene::NListener,
                       public events::scene_graph_tree_host::NListener {
 public:
  std::vector<std::pair<Environment, Environment>> environments;  // old and new
  int trees = 0;

 private:
  void OnEnvironmentChange(NSceneNode const& scene, Environment const& old) override {
    environments.emplace_back(old, scene.GetEnvironment());
  }
  void OnSceneGraphTreeChange(NSceneGraphTreeHost const&,
                              Pointer<NSceneGraphTreeNode> const&) override {
    ++trees;
  }
  void OnSceneGraphTreeRootChange(NSceneGraphTreeHost const&, NSceneGraphTreeNode const&,
                                  Pointer<scenegraph::item::NSceneGraphItemNode> const&) override {}
};

TEST(Scene, TellsOfTreeAndEnvironmentWithTheOldOne) {
  support::World world;
  Pointer<Recorder> const recorder(new Recorder);
  world.events->GetSceneGraphTreeHostEventMultiplexer().AddObserver(*recorder);
  world.events->GetSceneEventMultiplexer().AddObserver(*recorder);
  auto const scene = world.scenes->CreateNode(NNodeID());
  EXPECT_EQ(scene->GetEnvironment(), nullptr);
  EXPECT_EQ(scene->GetSceneGraph(), nullptr);

  Environment a = world.environments->CreateNode(NNodeID());
  scene->SetEnvironment(*a);
  scene->SetEnvironment(scene->GetEnvironmentRef());
  scene->SetEnvironment({});
  EXPECT_THAT(recorder->environments, ElementsAre(std::pair(Environment(), a), std::pair(a, a),
                                                  std::pair(a, Environment())));
  scene->SetSceneGraph(*world.trees->CreateNode(NNodeID()));
  EXPECT_EQ(recorder->trees, 1);

  scene->SetEnvironment(*a);
  recorder->environments.clear();
  world.environments->RemoveNode(*a);
  a.reset();
  EXPECT_EQ(scene->GetEnvironment(), nullptr);
  EXPECT_TRUE(scene->GetEnvironmentRef());
  EXPECT_TRUE(recorder->environments.empty());
}

TEST(SceneDomain, AttachesTheMultiplexersThatItHas) {
  Pointer<events::scene_graph_tree_host::NMultiplexer> const hosts(
      new events::scene_graph_tree_host::NMultiplexer);
  Pointer<events::scene::NMultiplexer> const scenes(new events::scene::NMultiplexer);
  for (int which = 0; which != 4; ++which) {
    Pointer<NSceneDomain> const domain(new NSceneDomain(
        nullptr, nullptr, which & 1 ? hosts.get() : nullptr, which & 2 ? scenes.get() : nullptr));
    auto const scene = domain->CreateNode(NNodeID());
    ASSERT_NE(scene, nullptr);
    EXPECT_EQ(scene->AddObserver(*hosts), (which & 1) == 0);
    EXPECT_EQ(scene->AddObserver(*scenes), (which & 2) == 0);
  }
}

}  // namespace
}  // namespace corvanta::data::domain::scene
