#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/events/scene_graph_tree/NMultiplexer.h"

namespace corvanta::data::domain::scenegraph::tree {

/// The domain of type "scenegraphtree".
class CORVANTA_API NSceneGraphTreeDomain
    : public NDomain<NSceneGraphTreeNode, core::name::NStrictNamespace> {
 public:
  NSceneGraphTreeDomain(core::domain::NDomainManager const* manager,
                        events::attribute_change::NMultiplexer const* multiplexer,
                        events::scene_graph_tree::NMultiplexer* trees);
  ~NSceneGraphTreeDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
  bool InitializeNode(NSceneGraphTreeNode& node) const override;

  boost::intrusive_ptr<events::scene_graph_tree::NMultiplexer> const m_trees;
};

}  // namespace corvanta::data::domain::scenegraph::tree
