#pragma once

#include <boost/intrusive_ptr.hpp>
#include <set>

#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/export.h"

namespace corvanta::data::animation {

/// What a step of an engine needs from its caller.
class CORVANTA_API NAnimationEngineArgs {
 public:
  using Cameras = std::set<
      domain::scenegraph::NSceneGraphPath<domain::scenegraph::item::NSceneGraphCameraNode>>;
  using Scenes = std::set<boost::intrusive_ptr<domain::scene::NSceneNode>>;

  NAnimationEngineArgs(NAnimationEngineArgs const&) = default;
  NAnimationEngineArgs& operator=(NAnimationEngineArgs const&) = default;

  /// The cameras that camera keys move.
  void GetCameras(Cameras& cameras) const { GetCamerasImpl(cameras); }
  /// The scenes whose environment the environment keys set.
  void GetScenes(Scenes& scenes) const { GetScenesImpl(scenes); }

 protected:
  NAnimationEngineArgs() = default;
  ~NAnimationEngineArgs() = default;

 private:
  virtual void GetCamerasImpl(Cameras& cameras) const = 0;
  virtual void GetScenesImpl(Scenes& scenes) const = 0;
};

}  // namespace corvanta::data::animation
