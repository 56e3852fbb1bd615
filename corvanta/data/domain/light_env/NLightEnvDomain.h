#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/events/light_env/NMultiplexer.h"

namespace corvanta::data::domain::light_env {

/// The domain of type "lightenvironment".
class CORVANTA_API NLightEnvDomain : public NDomain<NLightEnvNode, core::name::NStrictNamespace> {
 public:
  NLightEnvDomain(core::domain::NDomainManager const* manager,
                  events::attribute_change::NMultiplexer const* multiplexer,
                  events::light_env::NMultiplexer* lightEnvs);
  ~NLightEnvDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
  bool InitializeNode(NLightEnvNode& node) const override;

  boost::intrusive_ptr<events::light_env::NMultiplexer> const m_lightEnvs;
};

}  // namespace corvanta::data::domain::light_env
