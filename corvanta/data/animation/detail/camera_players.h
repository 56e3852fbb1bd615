#pragma once

#include <array>
#include <vector>

#include "corvanta/data/animation/NAnimationEngineArgs.h"
#include "corvanta/data/animation/detail/Step.h"
#include "corvanta/data/animation/detail/channels.h"

namespace corvanta::data::animation::detail {

/// The camera block of a key, with its time in the engine's unit. All in world coordinates.
struct CameraKey {
  double time;
  std::array<double, 3> translation;
  std::array<double, 3> up;
  std::array<double, 3> interest;
};

/// Moves the cameras of the caller through two keys or more.
class CameraTrack {
 public:
  /// Requires: `keys` in order of time.
  explicit CameraTrack(std::vector<CameraKey> const& keys);

  bool MustPlay(Step const& step) const { return m_times.MustUpdate(step); }
  /// A camera that fixes its roll gets (0, 1, 0) for up.
  void Play(NAnimationEngineArgs::Cameras const& cameras, Step const& step) const;

 private:
  TrackTimes m_times;
  SplineChannels<3> m_translation;
  SplineChannels<6> m_upAndInterest;
};

/// Puts the cameras of the caller into a pose when a step crosses the key's time.
class CameraPose {
 public:
  explicit CameraPose(CameraKey const& key) : m_key(key) {}

  bool MustPlay(Step const& step) const { return Crosses(step, m_key.time); }
  /// Every camera gets the pose's up.
  void Play(NAnimationEngineArgs::Cameras const& cameras) const;

 private:
  CameraKey m_key;
};

}  // namespace corvanta::data::animation::detail
