#include "corvanta/data/switches/NCameraSwitch.h"

#include "corvanta/core/detail/positions.h"

namespace corvanta::data::switches {

using domain::scenegraph::NSceneGraphPath;
using domain::scenegraph::item::NSceneGraphCameraNode;

struct NCameraSwitch::Block {
  std::list<NSceneGraphPath<NSceneGraphCameraNode>> cameras;
};

NCameraSwitch::NCameraSwitch() : m_block(new Block) {}

NCameraSwitch::~NCameraSwitch() = default;

std::list<NSceneGraphPath<NSceneGraphCameraNode>> const& NCameraSwitch::GetCameras()
    const noexcept {
  return m_block->cameras;
}

bool NCameraSwitch::AddCamera(NSceneGraphPath<NSceneGraphCameraNode> const& camera,
                              unsigned int index) {
  return core::detail::InsertAt(m_block->cameras, camera, index);
}

bool NCameraSwitch::RemoveCamera(unsigned int index) {
  return core::detail::EraseAt(m_block->cameras, index);
}

}  // namespace corvanta::data::switches
