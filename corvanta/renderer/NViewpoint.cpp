#include "corvanta/renderer/NViewpoint.h"

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

constexpr double kStereoDistance = 1.0 / 30;  // of the distance to the interest
constexpr double kHeadTangent = 1.0;          // of half the height that a display shows
constexpr double kHeadOutwards = 1.1;         // of half its width, outwards; the rest is inwards

boost::intrusive_ptr<NCameraNode> GetLens(NCameraPath const& camera) {
  auto const node = camera.GetNode();
  auto const lens = node ? node->GetCameraNode() : nullptr;
  // A camera item without a lens sees as a new one does.
  return lens ? lens : new NCameraNode(core::node::NNodeID(), nullptr, nullptr);
}

void SetLens(NViewpoint& viewpoint, NCameraNode const& lens) {
  auto const get = [&lens](wchar_t const* name) {
    auto const value = static_cast<float>(lens.QueryAttribute(name)->GetValue().GetDouble());
    return std::isfinite(value) && value > 0.0f ? value : 1.0f;
  };
  viewpoint.exposure = get(data::domain::camera::AN_EXPOSURE);
  viewpoint.gamma = get(data::domain::camera::AN_GAMMA);
  if (viewpoint.projection(3, 3) == 0.0f) {
    Vec3 position;
    viewpoint.view.Inverse().MultVecMatrix(Vec3(), position);
    viewpoint.position = {position.x, position.y, position.z, 1.0f};
  } else {
    viewpoint.position = {viewpoint.view(0, 2), viewpoint.view(1, 2), viewpoint.view(2, 2), 0.0f};
  }
}

}  // namespace

Matrix NViewpoint::GetReversedDepthViewProjection() const {
  Matrix turned = projection;
  for (int row = 0; row != 4; ++row) turned(row, 2) = projection(row, 3) - projection(row, 2);
  return view * turned;
}

NViewpoint GetViewpoint(NCameraPath const& camera, double aspect, NClipDistances const& clip,
                        NStereoSide side) {
  auto const lens = GetLens(camera);
  double const focus = item::GetFocalLength(camera);
  double const shiftBefore = lens->GetStereoShiftX();
  double const distanceBefore = lens->GetStereoScreenDistance();
  if (side != NSS_BOTH) {
    // Seen from further left, all is shifted to the right.
    lens->SetStereoShiftX(-side * focus * kStereoDistance / 2);
    lens->SetStereoScreenDistance(focus);
  }
  NViewpoint viewpoint;
  viewpoint.view = item::GetViewMatrix(camera);
  viewpoint.projection =
      lens->GetProjectionMatrix(aspect, clip.near, clip.far, focus, -0.5, 0.5, 0.5, -0.5, 0, 0);
  lens->SetStereoShiftX(shiftBefore);
  lens->SetStereoScreenDistance(distanceBefore);
  SetLens(viewpoint, *lens);
  return viewpoint;
}

NViewpoint GetHeadMountedViewpoint(NCameraPath const& camera, double aspect,
                                   NClipDistances const& clip, NStereoSide side) {
  Vec3 const focus = item::GetFocalVec(camera);
  float const level = std::sqrt(focus.x * focus.x + focus.z * focus.z);
  // The library turns the head about y alone.
  Matrix const pitch(VX_Math::Quaternion(Vec3(1.0f, 0.0f, 0.0f), std::atan2(focus.y, level)));
  auto const apart = static_cast<float>(focus.Length() * kStereoDistance);
  double const outwards = kHeadTangent * aspect * kHeadOutwards;
  double const inwards = kHeadTangent * aspect * (2 - kHeadOutwards);
  auto const lens = GetLens(camera);
  NViewpoint viewpoint;
  viewpoint.view =
      item::GetViewMatrixHMD(camera, pitch, Vec3(static_cast<float>(side) * apart / 2, 0.0f, 0.0f));
  viewpoint.projection = lens->GetProjectionMatrixHMD(
      clip.near, clip.far, side == NSS_LEFT ? outwards : inwards,
      side == NSS_LEFT ? inwards : outwards, kHeadTangent, kHeadTangent, 0, 0);
  SetLens(viewpoint, *lens);
  return viewpoint;
}

}  // namespace corvanta::renderer
