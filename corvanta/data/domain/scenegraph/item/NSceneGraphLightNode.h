#pragma once

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"

namespace corvanta::data::domain::scenegraph::item {

/// Places a light node in a scene. It shines along the item's negative z axis.
class CORVANTA_API NSceneGraphLightNode : public NSceneGraphItemNode {
 public:
  NSceneGraphLightNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                       events::attribute_change::NMultiplexer const* multiplexer);
  ~NSceneGraphLightNode() override;

  /// Fails: null when the reference is empty, the node has gone, or it is no light.
  boost::intrusive_ptr<light::NLightNode> GetLightNode() const;
  core::node::NNodeReference<light::NLightNode> const& GetLightRef() const;
  /// Raises: nothing.
  void SetLightNode(core::node::NNodeReference<light::NLightNode> const& light);

 private:
  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }
  wchar_t const* GetSceneGraphItemTypeImpl() const override;

  core::node::NNodeReference<light::NLightNode> m_light;
};

}  // namespace corvanta::data::domain::scenegraph::item
