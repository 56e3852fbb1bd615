#include "corvanta/data/domain/scene/NSceneDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"

namespace corvanta::data::domain::scene {

NSceneDomain::NSceneDomain(core::domain::NDomainManager const* manager,
                           events::attribute_change::NMultiplexer const* multiplexer,
                           events::scene_graph_tree_host::NMultiplexer* treeHosts,
                           events::scene::NMultiplexer* scenes)
    : NDomain(manager, multiplexer, core::string_table::GetString(core::string_table::DATA_SCENE)),
      m_treeHosts(treeHosts),
      m_scenes(scenes) {}

NSceneDomain::~NSceneDomain() = default;

wchar_t const* NSceneDomain::GetTypeImpl() const { return DT_SCENE; }

bool NSceneDomain::InitializeNode(NSceneNode& node) const {
  scenegraph::tree::NSceneGraphTreeHost& host = node;
  return Attach<events::scene_graph_tree_host::NListener>(m_treeHosts, host) &&
         Attach<events::scene::NListener>(m_scenes, node);
}

}  // namespace corvanta::data::domain::scene
