#include "corvanta/data/domain/environment/NEnvironmentDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"

namespace corvanta::data::domain::environment {

NEnvironmentDomain::NEnvironmentDomain(core::domain::NDomainManager const* manager,
                                       events::attribute_change::NMultiplexer const* multiplexer,
                                       events::environment_map_change::NMultiplexer* maps,
                                       events::environment::NMultiplexer* environments)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_ENVIRONMENT)),
      m_maps(maps),
      m_environments(environments) {}

NEnvironmentDomain::~NEnvironmentDomain() = default;

wchar_t const* NEnvironmentDomain::GetTypeImpl() const { return DT_ENVIRONMENT; }

bool NEnvironmentDomain::InitializeNode(NEnvironmentNode& node) const {
  return Attach<events::environment::NListener>(m_environments, node) &&
         Attach<events::environment_map_change::NListener>(m_maps, node);
}

}  // namespace corvanta::data::domain::environment
