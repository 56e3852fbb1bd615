#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/events/environment_map_change/NMultiplexer.h"
#include "corvanta/data/events/material/NMultiplexer.h"

namespace corvanta::data::domain::material {

/// The domain of type "material".
class CORVANTA_API NMaterialDomain : public NDomain<NMaterialNode, core::name::NStrictNamespace> {
 public:
  /// Every node made here reports to `environmentMapChange` and to `material`. Without the first
  /// it reports to neither.
  NMaterialDomain(core::domain::NDomainManager const* manager,
                  events::attribute_change::NMultiplexer const* multiplexer,
                  events::environment_map_change::NMultiplexer* environmentMapChange,
                  events::material::NMultiplexer* material);
  ~NMaterialDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
  bool InitializeNode(NMaterialNode& node) const override;

  boost::intrusive_ptr<events::environment_map_change::NMultiplexer> const m_environmentMapChange;
  boost::intrusive_ptr<events::material::NMultiplexer> const m_material;
};

}  // namespace corvanta::data::domain::material
