#pragma once

#include <memory>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"

namespace corvanta::data::domain::scenegraph::item {

/// How a user moves the camera; for the caller.
enum NCameraNavigationType : long { NCNT_DEFAULT = 0 };

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/scenegraph/item/camera_item_attributes.def"

/// Places a camera node in a scene. Interest and up are global: the item's transform doesn't move
/// them.
class CORVANTA_API NSceneGraphCameraNode : public NSceneGraphItemNode {
 public:
  NSceneGraphCameraNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                        events::attribute_change::NMultiplexer const* multiplexer);
  ~NSceneGraphCameraNode() override;

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/scenegraph/item/camera_item_attributes.def"

  /// Fails: null when the reference is empty, the node has gone, or it is no camera.
  boost::intrusive_ptr<camera::NCameraNode> GetCameraNode() const;
  core::node::NNodeReference<camera::NCameraNode> const& GetCameraRef() const;
  /// Raises: nothing.
  void SetCameraNode(core::node::NNodeReference<camera::NCameraNode> const& camera);

 private:
  struct Block;

  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }
  wchar_t const* GetSceneGraphItemTypeImpl() const override;

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::scenegraph::item
