#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/events/geometry_change/NMultiplexer.h"

namespace corvanta::data::domain::geometry {

/// The domain of type "geometry".
class CORVANTA_API NGeometryDomain : public NDomain<NGeometryNode, core::name::NStrictNamespace> {
 public:
  /// Every node made here reports its surfaces to `geometryChange`, which may be null.
  NGeometryDomain(core::domain::NDomainManager const* manager,
                  events::attribute_change::NMultiplexer const* multiplexer,
                  events::geometry_change::NMultiplexer* geometryChange);
  ~NGeometryDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
  bool InitializeNode(NGeometryNode& node) const override;

  boost::intrusive_ptr<events::geometry_change::NMultiplexer> const m_geometryChange;
};

}  // namespace corvanta::data::domain::geometry
