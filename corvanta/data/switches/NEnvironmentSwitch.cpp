#include "corvanta/data/switches/NEnvironmentSwitch.h"

#include <iterator>

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
  auto& environments = m_block->environments;
  if (index > environments.size()) return false;
  environments.insert(std::next(environments.begin(), index), environment);
  return true;
}

bool NEnvironmentSwitch::RemoveEnvironment(unsigned int index) {
  auto& environments = m_block->environments;
  if (index >= environments.size()) return false;
  environments.erase(std::next(environments.begin(), index));
  return true;
}

}  // namespace corvanta::data::switches
