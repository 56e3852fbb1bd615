#include "corvanta/renderer/NEye.h"

#include <cmath>

#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/data/domain/camera/NCameraNode.h"
#include "corvanta/data/domain/scenegraph/item/view.h"

namespace corvanta::renderer {

namespace {

namespace item = data::domain::scenegraph::item;
using data::domain::camera::NCameraNode;
using VX_Math::Matrix;
using VX_Math::Vec3;

constexpr double kEyeDistance = 1.0 / 30;  // of the distance to the interest
constexpr double kHeadTangent = 1.0;       // of half the height that a display shows
constexpr double kHeadOutwards = 1.1;      // of half its width, outwards; the rest is inwards

boost::intrusive_ptr<NCameraNode> GetLens(NCameraPath const& camera) {
  auto const node = camera.GetNode();
  auto const lens = node ? node->GetCameraNode() : nullptr;
  // A camera item without a lens sees as a new one does.
  return lens ? lens : new NCameraNode(core::node::NNodeID(), nullptr, nullptr);
}

void SetLens(NEye& eye, NCameraNode const& lens) {
  auto const get = [&lens](wchar_t const* name) {
    auto const value = static_cast<float>(lens.QueryAttribute(name)->GetValue().GetDouble());
    return std::isfinite(value) && value > 0.0f ? value : 1.0f;
  };
  eye.exposure = get(data::domain::camera::AN_EXPOSURE);
  eye.gamma = get(data::domain::camera::AN_GAMMA);
  if (eye.projection(3, 3) == 0.0f) {
    Vec3 place;
    eye.view.Inverse().MultVecMatrix(Vec3(), place);
    eye.towards = {place.x, place.y, place.z, 1.0f};
  } else {
    eye.towards = {eye.view(0, 2), eye.view(1, 2), eye.view(2, 2), 0.0f};
  }
}

}  // namespace

Matrix NEye::GetDrawnViewProjection() const {
  Matrix turned = projection;
  for (int row = 0; row != 4; ++row) turned(row, 2) = projection(row, 3) - projection(row, 2);
  return view * turned;
}

NEye GetEye(NCameraPath const& camera, double aspect, NClip const& clip, NEyeSide side) {
  auto const lens = GetLens(camera);
  double const focus = item::GetFocalLength(camera);
  double const shiftBefore = lens->GetStereoShiftX();
  double const distanceBefore = lens->GetStereoScreenDistance();
  if (side != NES_BOTH) {
    // An eye to the left sees all shifted to the right.
    lens->SetStereoShiftX(-side * focus * kEyeDistance / 2);
    lens->SetStereoScreenDistance(focus);
  }
  NEye eye;
  eye.view = item::GetViewMatrix(camera);
  eye.projection =
      lens->GetProjectionMatrix(aspect, clip.near, clip.far, focus, -0.5, 0.5, 0.5, -0.5, 0, 0);
  lens->SetStereoShiftX(shiftBefore);
  lens->SetStereoScreenDistance(distanceBefore);
  SetLens(eye, *lens);
  return eye;
}

NEye GetHeadMountedEye(NCameraPath const& camera, double aspect, NClip const& clip, NEyeSide side) {
  Vec3 const focus = item::GetFocalVec(camera);
  float const level = std::sqrt(focus.x * focus.x + focus.z * focus.z);
  // The library turns the head about y alone.
  Matrix const nod(VX_Math::Quaternion(Vec3(1.0f, 0.0f, 0.0f), std::atan2(focus.y, level)));
  auto const apart = static_cast<float>(focus.Length() * kEyeDistance);
  double const outwards = kHeadTangent * aspect * kHeadOutwards;
  double const inwards = kHeadTangent * aspect * (2 - kHeadOutwards);
  auto const lens = GetLens(camera);
  NEye eye;
  eye.view =
      item::GetViewMatrixHMD(camera, nod, Vec3(static_cast<float>(side) * apart / 2, 0.0f, 0.0f));
  eye.projection = lens->GetProjectionMatrixHMD(
      clip.near, clip.far, side == NES_LEFT ? outwards : inwards,
      side == NES_LEFT ? inwards : outwards, kHeadTangent, kHeadTangent, 0, 0);
  SetLens(eye, *lens);
  return eye;
}

}  // namespace corvanta::renderer
