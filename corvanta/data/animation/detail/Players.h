#pragma once

#include <optional>
#include <vector>

#include "corvanta/data/animation/detail/camera_players.h"
#include "corvanta/data/animation/detail/discrete_players.h"
#include "corvanta/data/animation/detail/item_players.h"

namespace corvanta::data::animation {
class NAnimation;
}

namespace corvanta::data::animation::detail {

/// What an engine plays: the keys of an animation, sorted by time and split by what they animate.
/// Never changed once made, so that a step can go on with them whatever is edited meanwhile.
class Players {
 public:
  Players() = default;
  explicit Players(NAnimation const& animation);

  void Play(NAnimationEngineArgs const& args, Step const& step) const;

 private:
  std::vector<ItemTrack> m_itemTracks;
  std::vector<ItemPose> m_itemPoses;
  std::optional<CameraTrack> m_cameraTrack;
  std::optional<CameraPose> m_cameraPose;
  MaterialTrack m_materialTrack;
  ModelTrack m_modelTrack;
  EnvironmentTrack m_environmentTrack;
};

}  // namespace corvanta::data::animation::detail
