#pragma once

#include "tests/scenegraph/graph.h"

namespace corvanta::test {

/// A view of a scene whose tree has a group as its root, with an environment that is not yet
/// filled.
struct ViewWorld : Graph {
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
