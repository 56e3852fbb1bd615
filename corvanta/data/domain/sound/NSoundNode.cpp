#include "corvanta/data/domain/sound/NSoundNode.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"
#include "corvanta/data/domain/sound/NSoundDomain.h"

namespace corvanta::data::domain::sound {

NSoundNode::NSoundNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                       events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer,
            core::string_table::GetString(core::string_table::DATA_SOUND)) {}

NSoundNode::~NSoundNode() = default;

NSoundDomain::NSoundDomain(core::domain::NDomainManager const* manager,
                           events::attribute_change::NMultiplexer const* multiplexer)
    : NDomain(manager, multiplexer, core::string_table::GetString(core::string_table::DATA_SOUND)) {
}

NSoundDomain::~NSoundDomain() = default;

wchar_t const* NSoundDomain::GetTypeImpl() const { return DT_SOUND; }

}  // namespace corvanta::data::domain::sound
