#include "corvanta/data/domain/scene/NSceneNode.h"

#include <utility>

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/events/detail/NModelRecorder.h"

namespace corvanta::data::domain::scene {

using environment::NEnvironmentNode;

struct NSceneNode::Block {
  core::attribute::NAttributeHost& host;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/scene/scene_attributes.def"
  core::node::NNodeReference<NEnvironmentNode> environment{};
};

#define CORVANTA_ROWS_BODIES NSceneNode
#include "corvanta/data/domain/scene/scene_attributes.def"

NSceneNode::NSceneNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                       events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer, core::string_table::GetString(core::string_table::DATA_SCENE)),
      m_block(new Block{*this}) {}

NSceneNode::~NSceneNode() = default;

boost::intrusive_ptr<NEnvironmentNode> NSceneNode::GetEnvironment() const {
  return m_block->environment.Get();
}

core::node::NNodeReference<NEnvironmentNode> const& NSceneNode::GetEnvironmentRef() const noexcept {
  return m_block->environment;
}

void NSceneNode::SetEnvironment(core::node::NNodeReference<NEnvironmentNode> const& environment) {
  boost::intrusive_ptr<NEnvironmentNode> const old = GetEnvironment();
  auto const previous = m_block->environment;
  m_block->environment = environment;
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) {
    recorder->OnReference(*this, events::NRK_ENVIRONMENT, previous, m_block->environment);
  }
  SceneEvents::NotifyObservers(
      [&](events::scene::NListener& listener) { listener.SignalEnvironmentChange(*this, old); });
}

}  // namespace corvanta::data::domain::scene
