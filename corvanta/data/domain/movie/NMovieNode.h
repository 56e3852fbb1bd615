#pragma once

#include "corvanta/data/domain/NNode.h"

namespace corvanta::data::domain::movie {

/// A movie of the document: an id, a name and the resource slot, where a player keeps what it
/// plays.
class CORVANTA_API NMovieNode : public NNode {
 public:
  NMovieNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
             events::attribute_change::NMultiplexer const* multiplexer);
  ~NMovieNode() override;

 private:
  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }
};

}  // namespace corvanta::data::domain::movie
