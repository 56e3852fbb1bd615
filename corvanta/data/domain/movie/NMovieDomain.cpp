#include "corvanta/data/domain/movie/NMovieDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"

namespace corvanta::data::domain::movie {

NMovieDomain::NMovieDomain(core::domain::NDomainManager const* manager,
                           events::attribute_change::NMultiplexer const* multiplexer)
    : NDomain(manager, multiplexer, core::string_table::GetString(core::string_table::DATA_MOVIE)) {
}

NMovieDomain::~NMovieDomain() = default;

wchar_t const* NMovieDomain::GetTypeImpl() const { return DT_MOVIE; }

}  // namespace corvanta::data::domain::movie
