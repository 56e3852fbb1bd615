#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>

#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/view/NViewListener.h"

namespace corvanta::data::view {

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/view/view_attributes.def"

/// What a viewport shows: a scene, through a camera, in a rectangle of the output. Keeps neither
/// scene nor camera alive. Hold it by `boost::intrusive_ptr`.
///
/// Units: the rectangle in parts of the output, (0, 0) its upper left corner. Its attributes tell
/// nobody of their changes.
class CORVANTA_API NView final : public core::attribute::NAttributeHost,
                                 public core::observer::NObservable<NView, NViewListener> {
 public:
  NView();

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/view/view_attributes.def"

  /// Fails: null if no scene is set, or it has gone.
  boost::intrusive_ptr<domain::scene::NSceneNode> GetScene() const;
  core::node::NNodeReference<domain::scene::NSceneNode> const& GetSceneRef() const noexcept;
  /// Raises: SignalSetScene, also for the same scene.
  void SetScene(core::node::NNodeReference<domain::scene::NSceneNode> const& scene);

  domain::scenegraph::NSceneGraphPath<domain::scenegraph::item::NSceneGraphCameraNode> const&
  GetCamera() const noexcept;
  /// Raises: SignalSetCamera, also for the same path.
  void SetCamera(
      domain::scenegraph::NSceneGraphPath<domain::scenegraph::item::NSceneGraphCameraNode> const&
          camera);

 private:
  struct Block;

  ~NView() override;

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::view
