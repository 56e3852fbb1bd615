#include "corvanta/data/domain/geometry/NGeometryDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"

namespace corvanta::data::domain::geometry {

NGeometryDomain::NGeometryDomain(core::domain::NDomainManager const* manager,
                                 events::attribute_change::NMultiplexer const* multiplexer,
                                 events::geometry_change::NMultiplexer* geometryChange)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_GEOMETRY)),
      m_geometryChange(geometryChange) {}

NGeometryDomain::~NGeometryDomain() = default;

wchar_t const* NGeometryDomain::GetTypeImpl() const { return DT_GEOMETRY; }

bool NGeometryDomain::InitializeNode(NGeometryNode& node) const {
  return Attach<NGeometryChangeListener>(m_geometryChange, node);
}

}  // namespace corvanta::data::domain::geometry
