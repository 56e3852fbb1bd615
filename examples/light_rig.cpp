// A new scene is set up with the presets: surroundings, a camera that shows all of it and seven
// lights round it, each fitted to the size of what is there. The program makes the nodes, the
// presets write into them; camera and lights follow when the scene has grown.
#include <iostream>
#include <string>
#include <vector>

#include "scene.h"

using namespace example;
namespace preset = corvanta::data::preset;
using CameraPath = domain::scenegraph::NSceneGraphPath<item::NSceneGraphCameraNode>;
using LightItems = std::vector<Pointer<item::NSceneGraphLightNode>>;

namespace {

void Print(char const* what, data::view::NView const& view, LightItems const& lights) {
  VX_Math::Box3 const box =
      domain::scenegraph::tree::GetBoundingBox(*view.GetScene()->GetSceneGraph());
  CameraPath const& camera = view.GetCamera();
  auto const [nearZ, farZ] = item::GetClipDistances(camera, view);
  Vec3 eye;
  camera.GetGlobalTransform().MultVecMatrix(Vec3(), eye);
  std::cout << what << " of " << Text(box.GetSize()) << '\n'
            << "  camera at " << Text(eye) << ", looks at " << Text(eye + item::GetFocalVec(camera))
            << '\n'
            << "  clips at " << Text(nearZ) << " and " << Text(farZ) << '\n';
  double sum = 0.0;
  for (auto const& placed : lights) {
    Vec3 place;
    placed->GetTransform().MultVecMatrix(Vec3(), place);
    auto const light = placed->GetLightNode();
    sum += light->GetColorR();
    std::cout << "  " << Name(*placed) << ' ' << Text(light->GetColorR()) << " at " << Text(place)
              << ", " << Text((place - box.GetCenter()).Length()) << " from the center, shadow "
              << Text(light->GetShadowDarkness()) << '\n';
  }
  std::cout << "  all lights together " << Text(sum) << '\n';
}

}  // namespace

int main() {
  Document document;
  auto const tree = CreateTree(document, L"studio");
  item::NSceneGraphItemNode& root = *tree->GetRoot();
  AddBox(document, root, L"car", {0, 0.75f, 0}, {1.8f, 1.5f, 4.4f});
  auto const environment = document.GetEnvironments().CreateNode();
  auto const scene = document.GetScenes().CreateNode();
  scene->SetSceneGraph(tree);
  scene->SetEnvironment(environment);

  // Camera and lights stand in the scene's own tree.
  auto const camera = document.GetItems().CreateNode<item::NSceneGraphCameraNode>();
  camera->SetCameraNode(document.GetCameras().CreateNode());
  root.AddChild(*camera);
  Pointer<data::view::NView> const view(new data::view::NView);
  view->SetScene(*scene);
  view->SetCamera(CameraPath(camera, tree));
  std::vector<Pointer<domain::light::NLightNode>> lights;
  LightItems placed;
  for (unsigned int i = 0; i != preset::GetDefaultLightCount(); ++i) {
    lights.push_back(document.GetLights().CreateNode());
    placed.push_back(document.GetItems().CreateNode<item::NSceneGraphLightNode>());
    placed.back()->SetName(L"light " + std::to_wstring(i));
    placed.back()->SetLightNode(lights.back());
    root.AddChild(*placed.back());
  }

  preset::PresetEnvironment(environment, view, &document.GetItems(), &document.GetImages());
  std::cout << "surroundings on a sphere of radius "
            << Text(environment->GetEnvironmentMapModel()->GetScaleX()) << '\n';
  preset::PresetLight(lights, true);
  preset::PresetSceneGraphCamera(camera, view, tree, true);
  preset::PresetSceneGraphLight(placed, view, tree, true);
  Print("a car", *view, placed);

  AddBox(document, root, L"trailer", {0, 1.25f, -6}, {2.2f, 2.5f, 6});
  preset::PresetSceneGraphCamera(camera, view, tree, true);
  preset::PresetSceneGraphLight(placed, view, tree, true);
  Print("the same with a trailer", *view, placed);
}
