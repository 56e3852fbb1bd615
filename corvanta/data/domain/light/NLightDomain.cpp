#include "corvanta/data/domain/light/NLightDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"

namespace corvanta::data::domain::light {

NLightDomain::NLightDomain(core::domain::NDomainManager const* manager,
                           events::attribute_change::NMultiplexer const* multiplexer)
    : NDomain(manager, multiplexer, core::string_table::GetString(core::string_table::DATA_LIGHT)) {
}

NLightDomain::~NLightDomain() = default;

wchar_t const* NLightDomain::GetTypeImpl() const { return DT_LIGHT; }

}  // namespace corvanta::data::domain::light
