#include "corvanta/data/domain/material/NMaterialDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"

namespace corvanta::data::domain::material {

NMaterialDomain::NMaterialDomain(core::domain::NDomainManager const* manager,
                                 events::attribute_change::NMultiplexer const* multiplexer,
                                 events::environment_map_change::NMultiplexer* environmentMapChange,
                                 events::material::NMultiplexer* material)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_MATERIAL)),
      m_environmentMapChange(environmentMapChange),
      m_material(material) {}

NMaterialDomain::~NMaterialDomain() = default;

wchar_t const* NMaterialDomain::GetTypeImpl() const { return DT_MATERIAL; }

bool NMaterialDomain::InitializeNode(NMaterialNode& node) const {
  if (!m_environmentMapChange) return true;
  return Attach<events::environment_map_change::NListener>(m_environmentMapChange, node) &&
         Attach<events::material::NListener>(m_material, node);
}

}  // namespace corvanta::data::domain::material
