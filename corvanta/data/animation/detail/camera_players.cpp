#include "corvanta/data/animation/detail/camera_players.h"

#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::data::animation::detail {

namespace {

using domain::scenegraph::item::NSceneGraphCameraNode;

std::vector<double> GetTimes(std::vector<CameraKey> const& keys) {
  std::vector<double> times;
  for (CameraKey const& key : keys) times.push_back(key.time);
  return times;
}

std::vector<std::array<double, 3>> GetTranslations(std::vector<CameraKey> const& keys) {
  std::vector<std::array<double, 3>> translations;
  for (CameraKey const& key : keys) translations.push_back(key.translation);
  return translations;
}

std::vector<std::array<double, 6>> GetUpsAndInterests(std::vector<CameraKey> const& keys) {
  std::vector<std::array<double, 6>> values;
  for (auto const& [time, translation, up, interest] : keys) {
    values.push_back({up[0], up[1], up[2], interest[0], interest[1], interest[2]});
  }
  return values;
}

/// Writes a pose to every camera that its path leads to.
void Write(NAnimationEngineArgs::Cameras const& cameras, CameraKey const& pose,
           bool mindsFixedRoll) {
  for (auto const& path : cameras) {
    if (!IsValid(path)) continue;
    boost::intrusive_ptr<NSceneGraphCameraNode> const camera = path.GetNode();
    if (!camera) continue;
    VX_Math::Matrix const parentToWorld =
        camera->GetTransform().Inverse() * path.GetGlobalTransform();
    VX_Math::Vec3 position(static_cast<float>(pose.translation[0]),
                           static_cast<float>(pose.translation[1]),
                           static_cast<float>(pose.translation[2]));
    parentToWorld.Inverse().MultVecMatrix(position, position);
    camera->SetTranslationX(position.x);
    camera->SetTranslationY(position.y);
    camera->SetTranslationZ(position.z);
    bool const isRollFixed = mindsFixedRoll && camera->FixesRoll();
    camera->SetUpX(isRollFixed ? 0.0 : pose.up[0]);
    camera->SetUpY(isRollFixed ? 1.0 : pose.up[1]);
    camera->SetUpZ(isRollFixed ? 0.0 : pose.up[2]);
    camera->SetInterestX(pose.interest[0]);
    camera->SetInterestY(pose.interest[1]);
    camera->SetInterestZ(pose.interest[2]);
  }
}

}  // namespace

CameraTrack::CameraTrack(std::vector<CameraKey> const& keys)
    : m_times(GetTimes(keys)),
      m_translation(m_times, GetTranslations(keys)),
      m_upAndInterest(m_times, GetUpsAndInterests(keys)) {}

void CameraTrack::Play(NAnimationEngineArgs::Cameras const& cameras, Step const& step) const {
  TrackTimes::Position const at = m_times.Find(step.time);
  auto const other = m_upAndInterest.Evaluate(at);
  CameraKey const pose{step.time,
                       m_translation.Evaluate(at),
                       {other[0], other[1], other[2]},
                       {other[3], other[4], other[5]}};
  Write(cameras, pose, true);
}

void CameraPose::Play(NAnimationEngineArgs::Cameras const& cameras) const {
  Write(cameras, m_key, false);
}

}  // namespace corvanta::data::animation::detail
