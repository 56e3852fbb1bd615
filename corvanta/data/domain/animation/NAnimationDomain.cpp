#include "corvanta/data/domain/animation/NAnimationDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"

namespace corvanta::data::domain::animation {

NAnimationDomain::NAnimationDomain(core::domain::NDomainManager const* manager,
                                   events::attribute_change::NMultiplexer const* multiplexer)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_ANIMATION)) {}

NAnimationDomain::~NAnimationDomain() = default;

wchar_t const* NAnimationDomain::GetTypeImpl() const { return DT_ANIMATION; }

}  // namespace corvanta::data::domain::animation
