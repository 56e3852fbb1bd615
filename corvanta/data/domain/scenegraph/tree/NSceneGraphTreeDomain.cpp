#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"

namespace corvanta::data::domain::scenegraph::tree {

NSceneGraphTreeDomain::NSceneGraphTreeDomain(
    core::domain::NDomainManager const* manager,
    events::attribute_change::NMultiplexer const* multiplexer,
    events::scene_graph_tree::NMultiplexer* trees)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_SCENEGRAPH_TREE)),
      m_trees(trees) {}

NSceneGraphTreeDomain::~NSceneGraphTreeDomain() = default;

wchar_t const* NSceneGraphTreeDomain::GetTypeImpl() const { return DT_SCENEGRAPH_TREE; }

bool NSceneGraphTreeDomain::InitializeNode(NSceneGraphTreeNode& node) const {
  return Attach<events::scene_graph_tree::NListener>(m_trees, node);
}

}  // namespace corvanta::data::domain::scenegraph::tree
