#include "corvanta/data/domain/movie/NMovieNode.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"
#include "corvanta/data/domain/movie/NMovieDomain.h"

namespace corvanta::data::domain::movie {

NMovieNode::NMovieNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                       events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer,
            core::string_table::GetString(core::string_table::DATA_MOVIE)) {}

NMovieNode::~NMovieNode() = default;

NMovieDomain::NMovieDomain(core::domain::NDomainManager const* manager,
                           events::attribute_change::NMultiplexer const* multiplexer)
    : NDomain(manager, multiplexer, core::string_table::GetString(core::string_table::DATA_MOVIE)) {
}

NMovieDomain::~NMovieDomain() = default;

wchar_t const* NMovieDomain::GetTypeImpl() const { return DT_MOVIE; }

}  // namespace corvanta::data::domain::movie
