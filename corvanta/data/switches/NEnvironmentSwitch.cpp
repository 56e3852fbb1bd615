#include "corvanta/data/switches/NEnvironmentSwitch.h"

#include "corvanta/core/detail/positions.h"

namespace corvanta::data::switches {

using core::node::NNodeReference;
using domain::environment::NEnvironmentNode;

struct NEnvironmentSwitch::Block {
  std::list<NNodeReference<NEnvironmentNode>> environments;
};

NEnvironmentSwitch::NEnvironmentSwitch() : m_block(new Block) {}

NEnvironmentSwitch::~NEnvironmentSwitch() = default;

std::list<NNodeReference<NEnvironmentNode>> const& NEnvironmentSwitch::GetEnvironments()
    const noexcept {
  return m_block->environments;
}

bool NEnvironmentSwitch::AddEnvironment(NNodeReference<NEnvironmentNode> const& environment,
                                        unsigned int index) {
  return core::detail::InsertAt(m_block->environments, environment, index);
}

bool NEnvironmentSwitch::RemoveEnvironment(unsigned int index) {
  return core::detail::EraseAt(m_block->environments, index);
}

}  // namespace corvanta::data::switches
