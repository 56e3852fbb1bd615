#include "corvanta/data/domain/light/NLightNode.h"

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/string_table/string_table.h"

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

}  // namespace corvanta::data::domain::light
