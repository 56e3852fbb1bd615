#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/events/scene/NMultiplexer.h"
#include "corvanta/data/events/scene_graph_tree_host/NMultiplexer.h"

namespace corvanta::data::domain::scene {

/// The domain of type "scene".
class CORVANTA_API NSceneDomain : public NDomain<NSceneNode, core::name::NStrictNamespace> {
 public:
  NSceneDomain(core::domain::NDomainManager const* manager,
               events::attribute_change::NMultiplexer const* multiplexer,
               events::scene_graph_tree_host::NMultiplexer* treeHosts,
               events::scene::NMultiplexer* scenes);
  ~NSceneDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
  bool InitializeNode(NSceneNode& node) const override;

  boost::intrusive_ptr<events::scene_graph_tree_host::NMultiplexer> const m_treeHosts;
  boost::intrusive_ptr<events::scene::NMultiplexer> const m_scenes;
};

}  // namespace corvanta::data::domain::scene
