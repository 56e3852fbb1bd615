#include "corvanta/data/domain/sound/NSoundNode.h"

#include "corvanta/core/string_table/string_table.h"

namespace corvanta::data::domain::sound {

NSoundNode::NSoundNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                       events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer,
            core::string_table::GetString(core::string_table::DATA_SOUND)) {}

NSoundNode::~NSoundNode() = default;

}  // namespace corvanta::data::domain::sound
