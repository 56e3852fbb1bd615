#include "corvanta/data/switches/NCameraSwitch.h"

#include <iterator>

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
  auto& cameras = m_block->cameras;
  if (index > cameras.size()) return false;
  cameras.insert(std::next(cameras.begin(), index), camera);
  return true;
}

bool NCameraSwitch::RemoveCamera(unsigned int index) {
  auto& cameras = m_block->cameras;
  if (index >= cameras.size()) return false;
  cameras.erase(std::next(cameras.begin(), index));
  return true;
}

}  // namespace corvanta::data::switches
