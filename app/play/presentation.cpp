#include "app/play/presentation.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"

namespace corvanta::app {

namespace {

using data::animation::NAnimation;
using data::animation::NAnimationKey;
using data::domain::scenegraph::item::NSceneGraphCameraNode;
using VX_Math::Vec3;
using Triple = NAnimationKey::Triple;
using Keys = std::vector<std::pair<boost::intrusive_ptr<NAnimationKey>, int>>;

// Tenths of a second.
constexpr int kStay = 20;
constexpr int kWay = 20;
constexpr int kStepOfRound = 5;
constexpr int kStepsOfRound = 24;

bool IsFinite(Triple const& values) {
  return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

boost::intrusive_ptr<NAnimationKey> CreateKey(std::wstring const& name, Triple const& eye,
                                              Triple const& interest, Triple const& up) {
  boost::intrusive_ptr<NAnimationKey> const key(new NAnimationKey);
  key->SetName(name);
  key->cameraTranslation = eye;
  key->cameraInterest = interest;
  key->cameraUp = up;
  key->cameraIsIgnored = false;
  return key;
}

void AddCamera(Keys& keys, NSceneGraphCameraNode const& camera,
               data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree) {
  data::domain::scenegraph::NSceneGraphPath<NSceneGraphCameraNode> const path(camera, tree);
  Vec3 at;
  path.GetGlobalTransform().MultVecMatrix(Vec3(), at);
  Triple const eye{at.x, at.y, at.z};
  Triple const interest{camera.GetInterestX(), camera.GetInterestY(), camera.GetInterestZ()};
  Triple const up{camera.GetUpX(), camera.GetUpY(), camera.GetUpZ()};
  if (!IsFinite(eye) || !IsFinite(interest) || !IsFinite(up)) return;
  int const arrival = keys.empty() ? 0 : keys.back().second + kWay;
  // Two equal keys hold the camera still between them.
  keys.emplace_back(CreateKey(camera.GetName(), eye, interest, up), arrival);
  keys.emplace_back(CreateKey(camera.GetName(), eye, interest, up), arrival + kStay);
}

Keys GoAround(data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree, double angle) {
  VX_Math::Box3 const box = GetBoundingBox(tree);
  Vec3 const center = box.IsEmpty() ? Vec3() : box.GetCenter();
  Triple middle{center.x, center.y, center.z};
  if (!IsFinite(middle)) middle = {};
  double radius = box.IsEmpty() ? 1.0 : static_cast<double>(box.GetSize().Length()) / 2;
  if (!(radius > 1e-3 && std::isfinite(radius))) radius = 1.0;
  // The ball around the box fills the view.
  constexpr double kPi = std::numbers::pi;
  double const distance = radius / std::sin(angle / 360.0 * kPi);
  constexpr double kHeight = 0.3;
  double const away = distance * std::sqrt(1.0 - kHeight * kHeight);
  Keys keys;
  for (int i = 0; i <= kStepsOfRound; ++i) {
    double const turn = 2.0 * kPi * (i % kStepsOfRound) / kStepsOfRound;
    Triple const eye{middle[0] + away * std::sin(turn), middle[1] + distance * kHeight,
                     middle[2] + away * std::cos(turn)};
    keys.emplace_back(CreateKey(L"around " + std::to_wstring(i), eye, middle, {0.0, 1.0, 0.0}),
                      i * kStepOfRound);
  }
  return keys;
}

}  // namespace

boost::intrusive_ptr<NAnimation> CreatePresentation(importer::NImportedModel const& model,
                                                    double angle) {
  Keys keys;
  for (auto const& camera : model.cameras) AddCamera(keys, *camera, *model.tree);
  if (keys.empty()) keys = GoAround(*model.tree, angle);
  boost::intrusive_ptr<NAnimation> const presentation(new NAnimation);
  presentation->SetName(model.tree->GetName());
  presentation->GetEngine().SetEndTime(keys.back().second / 10.0);
  presentation->AddKeys(keys);
  return presentation;
}

}  // namespace corvanta::app
