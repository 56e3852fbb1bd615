#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"
#include "corvanta/data/domain/scenegraph/item/item_types.h"

namespace corvanta::data::domain::scenegraph::item {

NSceneGraphItemDomain::NSceneGraphItemDomain(
    core::domain::NDomainManager const* manager,
    events::attribute_change::NMultiplexer const* multiplexer,
    events::scene_graph_model::NMultiplexer* models,
    events::scene_graph_hierarchy::NMultiplexer* hierarchy,
    events::scene_graph_tree_host::NMultiplexer* treeHosts)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_SCENEGRAPH_ITEM)),
      m_models(models),
      m_hierarchy(hierarchy),
      m_treeHosts(treeHosts) {}

NSceneGraphItemDomain::~NSceneGraphItemDomain() = default;

wchar_t const* NSceneGraphItemDomain::GetTypeImpl() const { return DT_SCENEGRAPH_ITEM; }

bool NSceneGraphItemDomain::InitializeNode(NSceneGraphItemNode& node) const {
  if (!m_hierarchy) return true;
  if (!Attach<events::scene_graph_hierarchy::NListener>(m_hierarchy, node)) return false;
  if (auto* const model = dynamic_cast<NSceneGraphModelNode*>(&node)) {
    if (!Attach<events::scene_graph_model::NListener>(m_models, *model)) return false;
  }
  if (auto* const reference = dynamic_cast<NSceneGraphReferenceNode*>(&node)) {
    return Attach<events::scene_graph_tree_host::NListener>(
        m_treeHosts, static_cast<tree::NSceneGraphTreeHost&>(*reference));
  }
  return true;
}

wchar_t const* const SGIT_GROUP = L"group";
wchar_t const* const SGIT_MODEL = L"model";
wchar_t const* const SGIT_LIGHT = L"light";
wchar_t const* const SGIT_CAMERA = L"camera";
wchar_t const* const SGIT_REFERENCE = L"reference";

}  // namespace corvanta::data::domain::scenegraph::item
