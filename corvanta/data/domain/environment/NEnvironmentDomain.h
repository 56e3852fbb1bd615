#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/events/environment/NMultiplexer.h"
#include "corvanta/data/events/environment_map_change/NMultiplexer.h"

namespace corvanta::data::domain::environment {

/// The domain of type "environment".
class CORVANTA_API NEnvironmentDomain
    : public NDomain<NEnvironmentNode, core::name::NStrictNamespace> {
 public:
  NEnvironmentDomain(core::domain::NDomainManager const* manager,
                     events::attribute_change::NMultiplexer const* multiplexer,
                     events::environment_map_change::NMultiplexer* maps,
                     events::environment::NMultiplexer* environments);
  ~NEnvironmentDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
  bool InitializeNode(NEnvironmentNode& node) const override;

  boost::intrusive_ptr<events::environment_map_change::NMultiplexer> const m_maps;
  boost::intrusive_ptr<events::environment::NMultiplexer> const m_environments;
};

}  // namespace corvanta::data::domain::environment
