#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/projection/NProjectionNode.h"

namespace corvanta::data::domain::projection {

/// The domain of type "projection".
class CORVANTA_API NProjectionDomain
    : public NDomain<NProjectionNode, core::name::NStrictNamespace> {
 public:
  NProjectionDomain(core::domain::NDomainManager const* manager,
                    events::attribute_change::NMultiplexer const* multiplexer);
  ~NProjectionDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
};

}  // namespace corvanta::data::domain::projection
