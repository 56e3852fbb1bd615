// A picture of a document without a window: a ball on a floor, lit by one lamp, through a camera,
// written as a PNG file. The second picture shows what changed in between; only that is taken over.
#include <corvanta/names.h>
#include <corvanta/renderer.h>

#include <fstream>
#include <iostream>

using namespace corvanta;

static void Write(std::string const& path, renderer::NPixels const& pixels) {
  std::ofstream(path, std::ios::binary) << renderer::EncodePng(pixels);
  std::cout << path << ": " << pixels.GetWidth() << " x " << pixels.GetHeight() << " pixels\n";
}

int main(int argc, char** argv) try {
  std::string const folder = argc > 1 ? std::string(argv[1]) + '/' : "";
  NDocument document;
  data::internal::Initialize(document.GetManager(), document.GetEvents());  // a sphere, a cube ...

  auto const root = document.GetItems().CreateNode<NSceneGraphGroupNode>();
  auto const paint = document.GetMaterials().CreateNode();
  paint->SetDiffuseR(0.9);
  auto const ball = document.GetItems().CreateNode<NSceneGraphModelNode>();
  ball->SetGeometryNode(data::internal::GetSphere(document.GetManager()));
  ball->SetMaterial(paint);
  auto const floor = document.GetItems().CreateNode<NSceneGraphModelNode>();
  floor->SetGeometryNode(data::internal::GetCube(document.GetManager()));
  floor->SetTranslationY(-1.6);
  floor->SetScaleY(0.1);
  auto const camera = document.GetItems().CreateNode<NSceneGraphCameraNode>();
  camera->SetTranslationX(4);
  camera->SetTranslationY(3);
  camera->SetTranslationZ(6);
  for (NSceneGraphItemNode* const child :
       std::initializer_list<NSceneGraphItemNode*>{ball.get(), floor.get(), camera.get()}) {
    root->AddChild(*child);
  }
  auto const tree = document.GetTrees().CreateNode();
  tree->SetRoot(root);

  auto const lamps = document.GetLightEnvs().CreateNode();
  lamps->CreateLamp(L"sun")->SetDirectionY(-1);
  auto const environment = document.GetEnvironments().CreateNode();
  environment->AddLightEnv(lamps);
  auto const scene = document.GetScenes().CreateNode();
  scene->SetSceneGraph(tree);
  scene->SetEnvironment(environment);

  boost::intrusive_ptr const view(new NView);
  view->SetScene(*scene);
  view->SetCamera({*camera, *tree});
  renderer::NPreview preview(document, *view, 320, 240);
  Write(folder + "red.png", preview.TakePicture());
  paint->SetDiffuseG(0.6);
  Write(folder + "orange.png", preview.TakePicture());
} catch (std::exception const& error) {
  std::cerr << "draw_to_png: " << error.what() << '\n';
  return 1;
}
