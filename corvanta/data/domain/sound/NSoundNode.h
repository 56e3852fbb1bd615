#pragma once

#include "corvanta/data/domain/NNode.h"

namespace corvanta::data::domain::sound {

/// A sound of the document: an id, a name and the resource slot, where a player keeps what it
/// plays.
class CORVANTA_API NSoundNode : public NNode {
 public:
  NSoundNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
             events::attribute_change::NMultiplexer const* multiplexer);
  ~NSoundNode() override;

 private:
  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }
};

}  // namespace corvanta::data::domain::sound
