#include "corvanta/data/domain/scenegraph/item/view.h"

#include <algorithm>
#include <cmath>

#include "corvanta/data/domain/camera/NCameraNode.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"
#include "corvanta/platform/d3dx9.h"
#include "corvanta/vx_math/Quaternion.h"

namespace corvanta::data::domain::scenegraph::item {

namespace {

using VX_Math::Box3;
using VX_Math::Matrix;
using VX_Math::Quaternion;
using VX_Math::Vec3;
using CameraPath = NSceneGraphPath<NSceneGraphCameraNode>;

Vec3 GetInterest(NSceneGraphCameraNode const& camera) {
  return VX_Math::Narrow(camera.GetInterestX(), camera.GetInterestY(), camera.GetInterestZ());
}

Vec3 GetPosition(CameraPath const& path) {
  Vec3 position;
  path.GetGlobalTransform().MultVecMatrix(Vec3(0, 0, 0), position);
  return position;
}

/// The global matrix of the item's parent, from that of the item.
Matrix GetParentTransform(CameraPath const& path, NSceneGraphCameraNode const& camera) {
  return camera.GetTransform().Inverse() * path.GetGlobalTransform();
}

/// `direction` turned about `axis`, by degrees of the tilt's sense.
Vec3 Tilt(Vec3 const& direction, Vec3 const& axis, double angle) {
  auto const radians = static_cast<float>(angle / 360 * -6.283185307179586);
  Vec3 tilted;
  Matrix(Quaternion(axis, radians)).MultDirMatrix(direction, tilted);
  return tilted;
}

}  // namespace

Matrix GetViewMatrix(CameraPath const& path) {
  auto const camera = path.GetNode();
  if (!camera) return {};
  Vec3 interest = GetInterest(*camera);
  Vec3 const eye = GetPosition(path);
  Vec3 up = VX_Math::Narrow(camera->GetUpX(), camera->GetUpY(), camera->GetUpZ());
  Vec3 right = up.Cross(eye - interest);
  right.Normalize();
  Vec3 sight = interest - eye;
  float const distance = sight.Length();
  sight.Normalize();
  up = (-sight).Cross(right);
  auto const lens = camera->GetCameraNode();
  if (lens && lens->GetProjectionType() == 0) {
    sight = Tilt(sight, right, lens->GetVerticalTiltAngle());
    sight = Tilt(sight, up, lens->GetHorizontalTiltAngle());
    interest = sight * distance + eye;
  }
  Matrix view = platform::MatrixLookAtRH(eye, interest, up);
  if (lens) {
    Matrix shift;
    shift.SetTranslate(VX_Math::Narrow(lens->GetStereoShiftX(), 0, 0));
    view.MultRight(shift);
  }
  return view;
}

Matrix GetViewMatrixHMD(CameraPath const& path, Matrix const& headPose, Vec3 const& eyeOffset) {
  auto const camera = path.GetNode();
  if (!camera) return {};
  Vec3 eye = GetPosition(path);
  Vec3 const sight = GetInterest(*camera) - eye;
  Matrix turn;
  turn.SetRotate(Quaternion(Vec3(0, 1, 0), std::atan2(-sight.x, -sight.z)));
  Matrix const pose = headPose * turn;
  Vec3 up(pose[1][0], pose[1][1], pose[1][2]);
  up.Normalize();
  Vec3 const forward(-pose[2][0], -pose[2][1], -pose[2][2]);
  Vec3 offset;
  turn.MultVecMatrix(eyeOffset, offset);
  eye += offset;
  return platform::MatrixLookAtRH(eye, eye + forward, up);
}

Vec3 GetFocalVec(CameraPath const& path) {
  auto const camera = path.GetNode();
  if (!camera) return {};
  Vec3 const translation = VX_Math::Narrow(camera->GetTranslationX(), camera->GetTranslationY(),
                                           camera->GetTranslationZ());
  Vec3 position;
  GetParentTransform(path, *camera).MultVecMatrix(translation, position);
  return GetInterest(*camera) - position;
}

double GetFocalLength(CameraPath const& path) { return GetFocalVec(path).Length(); }

std::pair<double, double> GetClipDistances(CameraPath const& given, Box3 const& box) {
  CameraPath const path = given;  // a listener may change or end the other
  Box3 seen = box.IsEmpty() ? Box3(Vec3(-1, -1, -1), Vec3(1, 1, 1)) : box;
  Matrix const view = GetViewMatrix(path);
  Vec3 focus;
  view.MultVecMatrix(GetFocalVec(path), focus);
  seen.Transform(view);
  double const a = seen.min.z;
  double const b = seen.max.z;
  double const focusDistance = focus.Length();
  double const farthest = std::max(std::abs(a), std::abs(b));
  // A box that reaches behind the camera has no nearest depth.
  double const nearest =
      a * b >= 0 ? std::min(std::abs(a), std::abs(b)) : std::min(farthest, focusDistance) * 0.001;
  double const far = farthest * 1.001;
  return {std::min(0.001 * far, nearest * 0.999), far};
}

std::pair<double, double> GetClipDistances(CameraPath const& path,
                                           tree::NSceneGraphTreeNode const& tree) {
  return GetClipDistances(path, tree::GetBoundingBox(tree));
}

void GetSceneGraphCameraTranslationCopyData(CameraPath const& source, CameraPath const& target,
                                            double (&translation)[3]) {
  auto const camera = target.GetNode();
  if (!camera) return;
  CameraPath const to = target;  // a listener may change or end the other
  Vec3 const eye = GetPosition(source);
  Vec3 local;
  GetParentTransform(to, *camera).Inverse().MultVecMatrix(eye, local);
  translation[0] = local.x;
  translation[1] = local.y;
  translation[2] = local.z;
}

}  // namespace corvanta::data::domain::scenegraph::item
