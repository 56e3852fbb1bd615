#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"

#include "corvanta/core/string_table/string_table.h"

namespace corvanta::data::domain::scenegraph::item {

NSceneGraphGroupNode::NSceneGraphGroupNode(
    core::node::NNodeID const& id, core::domain::NDomainBase* domain,
    events::attribute_change::NMultiplexer const* multiplexer)
    : NSceneGraphItemNode(id, domain, multiplexer,
                          core::string_table::GetString(core::string_table::DATA_GROUP)) {}

NSceneGraphGroupNode::~NSceneGraphGroupNode() = default;

void NSceneGraphGroupNode::CopyTo(NSceneGraphGroupNode& target) const {
  NSceneGraphItemNode::CopyTo(target);
}

wchar_t const* NSceneGraphGroupNode::GetSceneGraphItemTypeImpl() const { return SGIT_GROUP; }

}  // namespace corvanta::data::domain::scenegraph::item
