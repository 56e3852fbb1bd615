#include "corvanta/data/domain/projection/NProjectionDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"

namespace corvanta::data::domain::projection {

NProjectionDomain::NProjectionDomain(core::domain::NDomainManager const* manager,
                                     events::attribute_change::NMultiplexer const* multiplexer)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_PROJECTION)) {}

NProjectionDomain::~NProjectionDomain() = default;

wchar_t const* NProjectionDomain::GetTypeImpl() const { return DT_PROJECTION; }

}  // namespace corvanta::data::domain::projection
