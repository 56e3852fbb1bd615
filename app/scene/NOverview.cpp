#include "app/scene/NOverview.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

#include "app/scene/model_box.h"
#include "corvanta/data/domain/scenegraph/item/view.h"
#include "corvanta/data/preset/preset.h"
#include "corvanta/data/view/NView.h"

namespace corvanta::app {

namespace item = data::domain::scenegraph::item;
using core::node::NNodeID;
using VX_Math::Vec3;

namespace {

constexpr double kFilled = 0.92;  // of the picture's narrower side, the rest is margin
// Tangents of half a picture's angle, close enough to each other that what lies farthest for one of
// them does so, within the margin, for those in between.
constexpr float kSlopes[] = {0.1f, 0.16f, 0.2f, 0.25f, 0.32f, 0.45f, 0.7f, 1.2f};

/// Where along `side` a camera stands that sees equally much of the points on both sides.
/// Units: `depth` is where it stands along `ahead`.
double FindMiddle(std::vector<Vec3> const& points, Vec3 const& side, Vec3 const& ahead,
                  double depth) {
  double from = std::numeric_limits<double>::infinity(), to = -from;
  for (Vec3 const& point : points) {
    from = std::min(from, static_cast<double>(side.Dot(point)));
    to = std::max(to, static_cast<double>(side.Dot(point)));
  }
  constexpr int kHalvings = 40;
  for (int i = 0; i != kHalvings; ++i) {
    double const middle = (from + to) / 2;
    double most = 0, least = 0;
    for (Vec3 const& point : points) {
      double const distance = static_cast<double>(ahead.Dot(point)) - depth;
      double const slope = (static_cast<double>(side.Dot(point)) - middle) / distance;
      most = std::max(most, slope);
      least = std::min(least, slope);
    }
    (most > -least ? from : to) = middle;
  }
  return (from + to) / 2;
}

}  // namespace

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

std::array<Vec3, 3> NOverview::GetAxes() const {
  Vec3 right(-m_sight.z, 0.0f, m_sight.x);
  if (right.Normalize() == 0) right = Vec3(1.0f, 0.0f, 0.0f);
  return {right, right.Cross(m_sight), m_sight};
}

void NOverview::FrameAll() {
  auto const [right, up, ahead] = GetAxes();
  std::vector<Vec3> directions;
  for (Vec3 const& side : {right, -right, up, -up}) {
    for (float const slope : kSlopes) directions.push_back(side - ahead * slope);
  }
  directions.emplace_back(0.0f, -1.0f, 0.0f);
  NModelExtent extent = GetModelExtent(m_tree, directions);
  m_box = extent.box;
  m_points = std::move(extent.extremes);
  m_lowest.reset();
  if (m_points.empty()) {
    Frame(m_box);
  } else {
    m_lowest = m_points.back().y;
    m_points.pop_back();
    Place();
  }
}

void NOverview::Frame(VX_Math::Box3 const& box) {
  m_points.clear();
  for (unsigned corner = 0; corner != 8 && !box.IsEmpty(); ++corner) {
    m_points.emplace_back(corner & 1 ? box.max.x : box.min.x, corner & 2 ? box.max.y : box.min.y,
                          corner & 4 ? box.max.z : box.min.z);
  }
  if (m_points.empty()) m_points.emplace_back();
  Place();
}

void NOverview::Orbit(double angle) {
  VX_Math::Matrix const turn(VX_Math::Quaternion(
      Vec3(0.0f, 1.0f, 0.0f), static_cast<float>(angle * std::numbers::pi / 180)));
  turn.MultDirMatrix(m_sight, m_sight);
  m_sight.Normalize();
  FrameAll();
}

// A plane through the camera and a side of the picture has all points on one side where the camera
// lies far enough beyond the point that is farthest along the plane's normal.
void NOverview::Place() const {
  auto const [right, up, ahead] = GetAxes();
  double const half = m_lens->GetVerticalViewAngle() / 2 * std::numbers::pi / 180;
  double const narrow = std::tan(half) * kFilled;
  double const tangents[2] = {narrow * std::max(m_aspect, 1.0), narrow / std::min(m_aspect, 1.0)};
  double along[3]{};
  along[2] = std::numeric_limits<double>::infinity();
  VX_Math::Box3 box;
  for (Vec3 const& point : m_points) box.ExtendBy(point);
  for (int axis = 0; axis != 2; ++axis) {
    Vec3 const& side = axis == 0 ? right : up;
    double most = -std::numeric_limits<double>::infinity(), least = most;
    for (Vec3 const& point : m_points) {
      auto const sideways = static_cast<double>(side.Dot(point));
      double const depth = tangents[axis] * static_cast<double>(ahead.Dot(point));
      most = std::max(most, sideways - depth);
      least = std::max(least, -sideways - depth);
    }
    along[2] = std::min(along[2], -(most + least) / (2 * tangents[axis]));
  }
  // A point has no size.
  auto const middle = static_cast<double>(ahead.Dot(box.GetCenter()));
  along[2] = std::min(along[2], middle - 1e-3 / narrow);
  for (int axis = 0; axis != 2; ++axis) {
    along[axis] = FindMiddle(m_points, axis == 0 ? right : up, ahead, along[2]);
  }
  Vec3 const interest = right * static_cast<float>(along[0]) + up * static_cast<float>(along[1]) +
                        ahead * static_cast<float>(middle);
  Vec3 eye = interest - ahead * static_cast<float>(middle - along[2]);
  m_tree->GetControlTransform().Inverse().MultVecMatrix(eye, eye);
  auto const camera = m_camera.GetNode();
  camera->SetTranslationX(eye.x);
  camera->SetTranslationY(eye.y);
  camera->SetTranslationZ(eye.z);
  camera->SetInterestX(interest.x);
  camera->SetInterestY(interest.y);
  camera->SetInterestZ(interest.z);
  m_stand = GetStand();
}

std::array<double, 6> NOverview::GetStand() const {
  auto const camera = m_camera.GetNode();
  return {camera->GetTranslationX(), camera->GetTranslationY(), camera->GetTranslationZ(),
          camera->GetInterestX(),    camera->GetInterestY(),    camera->GetInterestZ()};
}

bool NOverview::IsLost() const {
  auto const camera = m_camera.GetNode();
  double const reach = camera->GetTranslationX() - camera->GetInterestX();
  return !std::isfinite(reach + camera->GetTranslationY() + camera->GetTranslationZ());
}

void NOverview::FitAspect(double aspect) const {
  // A view that is higher than wide takes its angle from the width, so that all is seen.
  m_lens->SetUsesVerticalViewAngleFlag(aspect >= 1);
  if (aspect == m_aspect || GetStand() != m_stand) return;
  m_aspect = aspect;
  Place();
}

Vec3 NOverview::GetEye() const {
  Vec3 eye;
  m_camera.GetGlobalTransform().MultVecMatrix(Vec3(), eye);
  return eye;
}

VX_Math::Matrix NOverview::GetViewProjection(double aspect) const {
  // A line of sight is found best through points about as far away as the models.
  FitAspect(aspect);
  double const distance = item::GetFocalLength(m_camera);
  return item::GetViewMatrix(m_camera) * m_lens->GetProjectionMatrix(aspect, distance / 10,
                                                                     distance * 10, distance, -0.5,
                                                                     0.5, 0.5, -0.5, 0, 0);
}

}  // namespace corvanta::app
