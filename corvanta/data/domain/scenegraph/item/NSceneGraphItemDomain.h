#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"
#include "corvanta/data/events/scene_graph_hierarchy/NMultiplexer.h"
#include "corvanta/data/events/scene_graph_model/NMultiplexer.h"
#include "corvanta/data/events/scene_graph_tree_host/NMultiplexer.h"

namespace corvanta::data::domain::scenegraph::item {

/// The domain of type "scenegraphitem": `CreateNode<NSceneGraphModelNode>(id)` and its like.
///
/// Requires: the model and the tree-host multiplexer wherever it has a hierarchy multiplexer;
/// without them these events aren't heard.
class CORVANTA_API NSceneGraphItemDomain
    : public NDomain<NSceneGraphItemNode, core::name::NStrictNamespace> {
 public:
  NSceneGraphItemDomain(core::domain::NDomainManager const* manager,
                        events::attribute_change::NMultiplexer const* multiplexer,
                        events::scene_graph_model::NMultiplexer* models,
                        events::scene_graph_hierarchy::NMultiplexer* hierarchy,
                        events::scene_graph_tree_host::NMultiplexer* treeHosts);
  ~NSceneGraphItemDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
  bool InitializeNode(NSceneGraphItemNode& node) const override;

  boost::intrusive_ptr<events::scene_graph_model::NMultiplexer> const m_models;
  boost::intrusive_ptr<events::scene_graph_hierarchy::NMultiplexer> const m_hierarchy;
  boost::intrusive_ptr<events::scene_graph_tree_host::NMultiplexer> const m_treeHosts;
};

}  // namespace corvanta::data::domain::scenegraph::item
