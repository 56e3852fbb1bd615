#include "corvanta/data/domain/movie/NMovieNode.h"

#include "corvanta/core/string_table/string_table.h"

namespace corvanta::data::domain::movie {

NMovieNode::NMovieNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                       events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer,
            core::string_table::GetString(core::string_table::DATA_MOVIE)) {}

NMovieNode::~NMovieNode() = default;

}  // namespace corvanta::data::domain::movie
