#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"

#include <utility>

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/camera/NCameraNode.h"
#include "corvanta/data/domain/detail/attribute_effects.h"
#include "corvanta/data/events/detail/NModelRecorder.h"

namespace corvanta::data::domain::scenegraph::item {

using camera::NCameraNode;
using core::node::NNodeReference;

struct NSceneGraphCameraNode::Block {
  core::attribute::NAttributeHost& host;
  using enum domain::detail::NAttributeEffect;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/scenegraph/item/camera_item_attributes.def"

  NNodeReference<NCameraNode> camera{};
};

#define CORVANTA_ROWS_BODIES NSceneGraphCameraNode
#include "corvanta/data/domain/scenegraph/item/camera_item_attributes.def"

NSceneGraphCameraNode::NSceneGraphCameraNode(
    core::node::NNodeID const& id, core::domain::NDomainBase* domain,
    events::attribute_change::NMultiplexer const* multiplexer)
    : NSceneGraphItemNode(id, domain, multiplexer,
                          core::string_table::GetString(core::string_table::DATA_CAMERA)),
      m_block(new Block{*this}) {}

NSceneGraphCameraNode::~NSceneGraphCameraNode() = default;

boost::intrusive_ptr<NCameraNode> NSceneGraphCameraNode::GetCameraNode() const {
  return m_block->camera.Get();
}

NNodeReference<NCameraNode> const& NSceneGraphCameraNode::GetCameraRef() const {
  return m_block->camera;
}

void NSceneGraphCameraNode::SetCameraNode(NNodeReference<NCameraNode> const& camera) {
  NNodeReference<NCameraNode> const previous = m_block->camera;
  m_block->camera = camera;
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) recorder->OnReference(*this, events::NRK_CAMERA, previous, m_block->camera);
}

wchar_t const* NSceneGraphCameraNode::GetSceneGraphItemTypeImpl() const { return SGIT_CAMERA; }

}  // namespace corvanta::data::domain::scenegraph::item
