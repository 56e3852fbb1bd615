#pragma once

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/export.h"

namespace corvanta::data::view {

class NView;

/// Is notified of what a view shows. The new scene or camera is in place when a signal comes.
/// Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NViewListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalSetScene(NView const& view,
                      core::node::NNodeReference<domain::scene::NSceneNode> const& scene) {
    OnSetScene(view, scene);
  }
  void SignalSetCamera(
      NView const& view,
      domain::scenegraph::NSceneGraphPath<domain::scenegraph::item::NSceneGraphCameraNode> const&
          camera) {
    OnSetCamera(view, camera);
  }

 protected:
  NViewListener() noexcept = default;
  NViewListener(NViewListener const&) noexcept = default;
  ~NViewListener() override;

 private:
  virtual void OnSetScene(NView const& view,
                          core::node::NNodeReference<domain::scene::NSceneNode> const& scene) = 0;
  virtual void OnSetCamera(
      NView const& view,
      domain::scenegraph::NSceneGraphPath<domain::scenegraph::item::NSceneGraphCameraNode> const&
          camera) = 0;
};

}  // namespace corvanta::data::view
