#pragma once

#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"

namespace corvanta::data::domain::scenegraph::item {

/// The plain inner node of the hierarchy.
class CORVANTA_API NSceneGraphGroupNode : public NSceneGraphItemNode {
 public:
  NSceneGraphGroupNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                       events::attribute_change::NMultiplexer const* multiplexer);
  ~NSceneGraphGroupNode() override;

  void CopyTo(NSceneGraphGroupNode& target) const;

 private:
  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }
  wchar_t const* GetSceneGraphItemTypeImpl() const override;
};

}  // namespace corvanta::data::domain::scenegraph::item
