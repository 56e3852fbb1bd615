// The mouse moves over a desk, and what is under it lights up: a ray through the pixel is shot at
// the scene through its camera, and the nearest model hit is the one under the mouse. Entering
// and leaving a model changes the emission of its material, which a renderer would hear of.
#include <iostream>
#include <vector>

#include "scene.h"

using namespace example;

namespace {

constexpr int kWidth = 800;
constexpr int kHeight = 600;

class Hover {
 public:
  Hover(domain::scene::NSceneNode const& scene, VX_Math::Matrix const& viewProjection)
      : m_scene(scene), m_viewProjection(viewProjection) {}

  void MoveTo(int x, int y) {
    // The view is the unit square with y upwards, and a pixel is met in its middle.
    VX_Math::Vec2 const point((static_cast<float>(x) + 0.5f) / kWidth,
                              1.0f - (static_cast<float>(y) + 0.5f) / kHeight);
    std::vector<data::operators::ray_picker::ModelPath> paths;
    std::vector<Vec3> hits;
    data::operators::ray_picker::PickDetail(m_scene, &point, &m_viewProjection, paths, hits);
    Pointer<item::NSceneGraphModelNode> const model =
        paths.empty() ? nullptr : paths.front().GetNode();
    if (model == m_model) return;
    std::cout << "pixel " << x << ", " << y << ':';
    if (m_model) SetGlow(" leaves ", 0.0);
    m_model = model;
    if (m_model) {
      SetGlow(" enters ", 0.3);
      std::cout << " at " << Text(hits.front()) << ", the nearest of " << paths.size();
    }
    std::cout << '\n';
  }

 private:
  void SetGlow(char const* what, double glow) const {
    auto const material = m_model->GetMaterialNode();
    material->SetEmissiveR(glow);
    material->SetEmissiveG(glow);
    material->SetEmissiveB(glow);
    std::cout << what << Name(*m_model) << " (emission " << Text(material->GetEmissiveR()) << ')';
  }

  domain::scene::NSceneNode const& m_scene;
  VX_Math::Matrix const m_viewProjection;
  Pointer<item::NSceneGraphModelNode> m_model;
};

}  // namespace

int main() {
  Document document;
  auto const tree = CreateTree(document, L"desk");
  item::NSceneGraphItemNode& root = *tree->GetRoot();
  for (auto const& box :
       {AddBox(document, root, L"board", {0, -0.05f, 0}, {2, 0.1f, 1}),
        AddBox(document, root, L"book", {-0.5f, 0.1f, 0}, {0.4f, 0.2f, 0.3f}),
        AddBox(document, root, L"cup", {0.5f, 0.15f, 0.2f}, {0.2f, 0.3f, 0.2f})}) {
    auto const material = document.GetMaterials().CreateNode();
    material->SetName(box->GetName());
    box->SetMaterial(material);
  }

  // A camera node is the lens; the camera item places it. Interest is the point looked at.
  auto const lens = document.GetCameras().CreateNode();
  lens->SetVerticalViewAngle(30.0);
  auto const placed = document.GetItems().CreateNode<item::NSceneGraphCameraNode>();
  placed->SetCameraNode(lens);
  placed->SetTranslationY(2.0);
  placed->SetTranslationZ(4.0);
  root.AddChild(*placed);
  domain::scenegraph::NSceneGraphPath<item::NSceneGraphCameraNode> const camera(placed, tree);
  auto const [nearZ, farZ] = item::GetClipDistances(camera, *tree);
  VX_Math::Matrix const projection =
      lens->GetProjectionMatrix(static_cast<double>(kWidth) / kHeight, nearZ, farZ,
                                item::GetFocalLength(camera), -0.5, 0.5, 0.5, -0.5, 0, 0);

  auto const scene = document.GetScenes().CreateNode();
  scene->SetSceneGraph(tree);
  Hover hover(*scene, item::GetViewMatrix(camera) * projection);
  for (int x = 0; x < kWidth; x += 20) hover.MoveTo(x, 280);
}
