#include "corvanta/data/domain/camera/NCameraDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"

namespace corvanta::data::domain::camera {

NCameraDomain::NCameraDomain(core::domain::NDomainManager const* manager,
                             events::attribute_change::NMultiplexer const* multiplexer)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_CAMERA)) {}

NCameraDomain::~NCameraDomain() = default;

wchar_t const* NCameraDomain::GetTypeImpl() const { return DT_CAMERA; }

}  // namespace corvanta::data::domain::camera
