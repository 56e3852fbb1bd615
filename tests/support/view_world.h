#pragma once

#include "tests/support/world.h"

namespace corvanta::support {

/// A view of a scene whose tree has a group as its root, with an environment that is not yet
/// filled.
struct ViewWorld : World {
  Group root = Make();
  Tree shown = MakeTree(root);
  Pointer<NSceneNode> scene = scenes->CreateNode();
  Pointer<NEnvironmentNode> environment = environments->CreateNode();
  Pointer<NView> view{new NView};
  Camera camera = Make<NSceneGraphCameraNode>();

  ViewWorld() {
    scene->SetSceneGraph(shown);
    scene->SetEnvironment(environment);
    view->SetScene(scene);
    root->AddChild(*camera);
  }
  NSceneGraphPath<NSceneGraphCameraNode> GetPath() const { return {camera, shown}; }
};

}  // namespace corvanta::support
