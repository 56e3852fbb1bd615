#include "corvanta/data/domain/light/NLightNode.h"

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"
#include "corvanta/data/domain/light/NLightDomain.h"

namespace corvanta::data::domain::light {

struct NLightNode::Block {
  core::attribute::NAttributeHost& host;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/light/light_attributes.def"
};

#define CORVANTA_ROWS_BODIES NLightNode
#include "corvanta/data/domain/light/light_attributes.def"

NLightNode::NLightNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                       events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer, core::string_table::GetString(core::string_table::DATA_LIGHT)),
      m_block(new Block{*this}) {}

NLightNode::~NLightNode() = default;

void NLightNode::CopyTo(NLightNode& target) const { CopyNodeTo(target); }

NLightDomain::NLightDomain(core::domain::NDomainManager const* manager,
                           events::attribute_change::NMultiplexer const* multiplexer)
    : NDomain(manager, multiplexer, core::string_table::GetString(core::string_table::DATA_LIGHT)) {
}

NLightDomain::~NLightDomain() = default;

wchar_t const* NLightDomain::GetTypeImpl() const { return DT_LIGHT; }

}  // namespace corvanta::data::domain::light
