#pragma once

#include "tests/scenegraph/graph.h"

namespace corvanta::test {

/// A view of a scene whose tree has a group as its root, with an environment that is not yet
/// filled.
struct ViewWorld : Graph {
  boost::intrusive_ptr<data::domain::scene::NSceneDomain> scenes{
      new data::domain::scene::NSceneDomain(&manager, attributes, nullptr, nullptr)};
  boost::intrusive_ptr<data::domain::environment::NEnvironmentDomain> environments{
      new data::domain::environment::NEnvironmentDomain(
          &manager, attributes, &events->GetEnvironmentMapChangeEventMultiplexer(),
          &events->GetEnvironmentEventMultiplexer())};
  boost::intrusive_ptr<data::domain::light::NLightDomain> lights{
      new data::domain::light::NLightDomain(&manager, attributes)};
  boost::intrusive_ptr<data::domain::image::NImageDomain> images{
      new data::domain::image::NImageDomain(&manager, attributes)};

  Group root = Make();
  Tree shown = MakeTree(root);
  boost::intrusive_ptr<data::domain::scene::NSceneNode> scene = scenes->CreateNode(NNodeID());
  boost::intrusive_ptr<data::domain::environment::NEnvironmentNode> environment =
      environments->CreateNode(NNodeID());
  boost::intrusive_ptr<data::view::NView> view{new data::view::NView};
  Camera camera = Make<item::NSceneGraphCameraNode>();

  ViewWorld() {
    scene->SetSceneGraph(shown);
    scene->SetEnvironment(environment);
    view->SetScene(scene);
    root->AddChild(*camera);
  }
  scenegraph::NSceneGraphPath<item::NSceneGraphCameraNode> GetPath() const {
    return {camera, shown};
  }
};

}  // namespace corvanta::test
