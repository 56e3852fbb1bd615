#include "app/scene/NOverview.h"

#include <algorithm>
#include <cmath>

#include "app/scene/model_box.h"
#include "corvanta/data/domain/scenegraph/item/view.h"
#include "corvanta/data/preset/preset.h"
#include "corvanta/data/view/NView.h"

namespace corvanta::app {

namespace item = data::domain::scenegraph::item;
using core::node::NNodeID;
using VX_Math::Vec3;

NOverview::NOverview(data::document::NDocument& document, Tree const& tree)
    : m_tree(tree), m_scene(document.GetScenes().CreateNode(NNodeID())) {
  m_scene->SetSceneGraph(tree);
  m_lens = document.GetCameras().CreateNode(NNodeID());
  auto const camera = document.GetItems().CreateNode<item::NSceneGraphCameraNode>(NNodeID());
  camera->SetCameraNode(m_lens);
  m_camera = {*camera, *tree};
  tree->GetRoot()->AddChild(*camera);
  boost::intrusive_ptr<data::view::NView> const view(new data::view::NView);
  view->SetScene(*m_scene);
  data::preset::PresetCamera(m_lens, true);
  data::preset::PresetSceneGraphCamera(camera, view, tree, true);
  m_sight = item::GetFocalVec(m_camera);
  // A box that isn't finite has left the camera nowhere: it looks as the preset does.
  float const square = m_sight.Dot(m_sight);
  if (!std::isfinite(square) || square == 0) m_sight = {-0.433f, -0.5f, -0.75f};
  m_sight.Normalize();
  FrameAll();
}

void NOverview::FrameAll() {
  m_box = GetModelBox(m_tree);
  Frame(m_box);
}

void NOverview::Frame(VX_Math::Box3 const& box) {
  auto const camera = m_camera.GetNode();
  Vec3 const center = box.IsEmpty() ? Vec3() : box.GetCenter();
  double const radius = std::max(1e-3, static_cast<double>(box.GetSize().Length()) / 2);
  // The ball around the box fills the narrower angle of the view.
  double const half = m_lens->GetVerticalViewAngle() / 2 * 3.14159265358979324 / 180;
  auto const distance = static_cast<float>(radius / std::sin(half));
  Vec3 eye = center - m_sight * distance;
  m_tree->GetControlTransform().Inverse().MultVecMatrix(eye, eye);
  camera->SetTranslationX(eye.x);
  camera->SetTranslationY(eye.y);
  camera->SetTranslationZ(eye.z);
  camera->SetInterestX(center.x);
  camera->SetInterestY(center.y);
  camera->SetInterestZ(center.z);
}

bool NOverview::IsLost() const {
  auto const camera = m_camera.GetNode();
  double const reach = camera->GetTranslationX() - camera->GetInterestX();
  return !std::isfinite(reach + camera->GetTranslationY() + camera->GetTranslationZ());
}

void NOverview::FitAspect(double aspect) const {
  // A view that is higher than wide takes its angle from the width, so that all is seen.
  m_lens->SetUsesVerticalViewAngleFlag(aspect >= 1);
}

Vec3 NOverview::GetEye() const {
  Vec3 eye;
  m_camera.GetGlobalTransform().MultVecMatrix(Vec3(), eye);
  return eye;
}

VX_Math::Matrix NOverview::GetViewProjection(double aspect) const {
  // A line of sight is found best through points about as far away as the models.
  double const distance = item::GetFocalLength(m_camera);
  FitAspect(aspect);
  return item::GetViewMatrix(m_camera) * m_lens->GetProjectionMatrix(aspect, distance / 10,
                                                                     distance * 10, distance, -0.5,
                                                                     0.5, 0.5, -0.5, 0, 0);
}

}  // namespace corvanta::app
