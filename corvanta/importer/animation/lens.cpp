#include "corvanta/importer/animation/lens.h"

#include <cmath>
#include <numbers>

#include "corvanta/importer/placement.h"

namespace corvanta::importer {

namespace {

namespace light = data::domain::light;
using VX_Math::Vec3;

constexpr double kDegrees = 180.0 / std::numbers::pi;

void SetLens(neutral::NCamera const& camera, double distance,
             data::domain::camera::NCameraNode& node) {
  double horizontal = camera.horizontalAngle;
  if (camera.orthographicWidth > 0.0f) {
    node.SetProjectionType(data::domain::camera::NPT_ORTHOGRAPHIC);
    // The width is half of what is seen.
    horizontal = 2.0 * std::atan(camera.orthographicWidth / distance);
  }
  if (!(horizontal > 0.0 && horizontal < std::numbers::pi)) return;
  node.SetHorizontalViewAngle(horizontal * kDegrees);
  node.SetUsesVerticalViewAngleFlag(false);
  if (camera.aspect > 0.0f) {
    double const tangent = std::tan(horizontal * 0.5) / camera.aspect;
    node.SetVerticalViewAngle(2.0 * std::atan(tangent) * kDegrees);
  }
}

}  // namespace

bool HasKind(neutral::NLight const& source) {
  return source.kind >= neutral::NLK_DIRECTIONAL && source.kind <= neutral::NLK_SPOT;
}

void SetLight(neutral::NLight const& source, light::NLightNode& node) {
  switch (source.kind) {
    case neutral::NLK_POINT:
      node.SetType(light::LT_POINT);
      break;
    case neutral::NLK_SPOT:
      node.SetType(light::LT_SPOT);
      node.QueryAttribute(light::AN_SPREAD_ANGLE)->SetValue(source.innerAngle * kDegrees, true);
      node.QueryAttribute(light::AN_FALLOFF_ANGLE)->SetValue(source.outerAngle * kDegrees, true);
      break;
    default:
      node.SetType(light::LT_DIRECTIONAL);
  }
  node.SetColorR(source.color[0]);
  node.SetColorG(source.color[1]);
  node.SetColorB(source.color[2]);
}

void Aim(neutral::NCamera const& camera, VX_Math::Matrix const& global, VX_Math::Box3 const& box,
         data::domain::scenegraph::item::NSceneGraphCameraNode& item) {
  Vec3 eye;
  Vec3 ahead;
  Vec3 up;
  global.MultVecMatrix(Vec3(), eye);
  global.MultDirMatrix(ToVec3(camera.ahead), ahead);
  global.MultDirMatrix(ToVec3(camera.up), up);
  ahead.Normalize();
  up.Normalize();
  float const reach = box.IsEmpty() ? 0.0f : (box.GetCenter() - eye).Dot(ahead);
  float const distance = reach > 0.0f ? reach : 1.0f;

  Vec3 const interest = eye + ahead * distance;
  item.SetInterestX(interest.x);
  item.SetInterestY(interest.y);
  item.SetInterestZ(interest.z);
  item.SetUpX(up.x);
  item.SetUpY(up.y);
  item.SetUpZ(up.z);
  if (auto const node = item.GetCameraNode()) SetLens(camera, distance, *node);
}

}  // namespace corvanta::importer
