#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/light/NLightNode.h"

namespace corvanta::data::domain::light {

/// The domain of type "light".
class CORVANTA_API NLightDomain : public NDomain<NLightNode, core::name::NStrictNamespace> {
 public:
  NLightDomain(core::domain::NDomainManager const* manager,
               events::attribute_change::NMultiplexer const* multiplexer);
  ~NLightDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
};

}  // namespace corvanta::data::domain::light
