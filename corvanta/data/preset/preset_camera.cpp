#include <cmath>

#include "corvanta/core/configuration/NConfiguration.h"
#include "corvanta/data/domain/camera/NCameraNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/preset/detail/scene_box.h"
#include "corvanta/data/preset/preset.h"

// A listener may let go of what an argument holds.
// NOLINTBEGIN(performance-unnecessary-value-param)
namespace corvanta::data::preset {

using domain::camera::NCameraNode;
using domain::scenegraph::item::NSceneGraphCameraNode;
using VX_Math::Box3;
using VX_Math::Vec3;

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kThirtyDegrees = 0.5235987755982988;

/// How far away the camera goes from a scene of that size.
double GetDistance(NCameraNode const& camera, Vec3 const& size) {
  bool const isVertical = camera.UsesVerticalViewAngle();
  double const side = isVertical ? size.y : size.x;
  double const angle = isVertical ? camera.GetVerticalViewAngle() : camera.GetHorizontalViewAngle();
  // The whole side over the tangent of half the angle: twice what would just hold it.
  double const distance = side / std::tan(angle / 360 * 0.5 * 2 * kPi);
  return size.z < distance ? distance : size.z;
}

/// To the right and above by thirty degrees.
Vec3 GetPosition(Vec3 const& centre, double distance) {
  double const slope = std::tan(kThirtyDegrees);
  return {static_cast<float>(centre.x + distance * slope),
          static_cast<float>(centre.y + distance / std::cos(kThirtyDegrees) * slope),
          static_cast<float>(centre.z + distance)};
}

/// What is placed, to come back to.
void Save(NSceneGraphCameraNode& item) {
  item.SetInterestXSaved(item.GetInterestX());
  item.SetInterestYSaved(item.GetInterestY());
  item.SetInterestZSaved(item.GetInterestZ());
  item.SetTranslationXSaved(item.GetTranslationX());
  item.SetTranslationYSaved(item.GetTranslationY());
  item.SetTranslationZSaved(item.GetTranslationZ());
  item.SetUpXSaved(item.GetUpX());
  item.SetUpYSaved(item.GetUpY());
  item.SetUpZSaved(item.GetUpZ());
}

}  // namespace

void PresetCamera(boost::intrusive_ptr<NCameraNode>, bool) {}

void PresetSceneGraphCamera(
    boost::intrusive_ptr<NSceneGraphCameraNode> item, boost::intrusive_ptr<view::NView> view,
    boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> tree, bool) {
  auto const camera = item ? item->GetCameraNode() : nullptr;
  if (!camera || !view || !tree) return;
  Box3 const box = detail::GetSceneBox(*view);
  Vec3 const centre = box.GetCenter();
  Vec3 position = GetPosition(centre, GetDistance(*camera, box.GetSize()));
  tree->GetControlTransform().Inverse().MultVecMatrix(position, position);
  item->SetInterestX(centre.x);
  item->SetInterestY(centre.y);
  item->SetInterestZ(centre.z);
  item->SetTranslationX(position.x);
  item->SetTranslationY(position.y);
  item->SetTranslationZ(position.z);
  item->SetUpX(0);
  item->SetUpY(1);
  item->SetUpZ(0);
  Save(*item);
  item->SetTransformIsAbsoluteFlag(true);
  using core::configuration::GetConfiguration;
  item->SetNavigationType(static_cast<domain::scenegraph::item::NCameraNavigationType>(
      GetConfiguration().GetLong(core::configuration::CK_VIEW_MODE)));
}

}  // namespace corvanta::data::preset
// NOLINTEND(performance-unnecessary-value-param)
