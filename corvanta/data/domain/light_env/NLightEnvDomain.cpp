#include "corvanta/data/domain/light_env/NLightEnvDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"

namespace corvanta::data::domain::light_env {

NLightEnvDomain::NLightEnvDomain(core::domain::NDomainManager const* manager,
                                 events::attribute_change::NMultiplexer const* multiplexer,
                                 events::light_env::NMultiplexer* lightEnvs)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_LIGHT_ENV)),
      m_lightEnvs(lightEnvs) {}

NLightEnvDomain::~NLightEnvDomain() = default;

wchar_t const* NLightEnvDomain::GetTypeImpl() const { return DT_LIGHT_ENV; }

bool NLightEnvDomain::InitializeNode(NLightEnvNode& node) const {
  return Attach<events::light_env::NListener>(m_lightEnvs, node);
}

}  // namespace corvanta::data::domain::light_env
