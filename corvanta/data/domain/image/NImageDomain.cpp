#include "corvanta/data/domain/image/NImageDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"

namespace corvanta::data::domain::image {

NImageDomain::NImageDomain(core::domain::NDomainManager const* manager,
                           events::attribute_change::NMultiplexer const* multiplexer)
    : NDomain(manager, multiplexer, core::string_table::GetString(core::string_table::DATA_IMAGE)) {
}

NImageDomain::~NImageDomain() = default;

wchar_t const* NImageDomain::GetTypeImpl() const { return DT_IMAGE; }

}  // namespace corvanta::data::domain::image
