#pragma once

#include "tests/scenegraph/graph.h"

namespace corvanta::test {

/// A view of a scene whose tree has a group as its root, with an environment that is not yet
/// filled.
struct ViewWorld : Graph {
  Pointer<data::domain::scene::NSceneDomain> scenes{
      new data::domain::scene::NSceneDomain(&manager, attributes, nullptr, nullptr)};
  Pointer<data::domain::environment::NEnvironmentDomain> environments{
      new data::domain::environment::NEnvironmentDomain(
          &manager, attributes, &events->GetEnvironmentMapChangeEventMultiplexer(),
          &events->GetEnvironmentEventMultiplexer())};
  Pointer<data::domain::light::NLightDomain> lights{
      new data::domain::light::NLightDomain(&manager, attributes)};
  Pointer<data::domain::image::NImageDomain> images{
      new data::domain::image::NImageDomain(&manager, attributes)};

  Group root = Make();
  Tree shown = MakeTree(root);
  Pointer<data::domain::scene::NSceneNode> scene = scenes->CreateNode(NNodeID());
  Pointer<data::domain::environment::NEnvironmentNode> environment =
      environments->CreateNode(NNodeID());
  Pointer<data::view::NView> view{new data::view::NView};
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
