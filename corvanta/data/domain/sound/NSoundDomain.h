#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/sound/NSoundNode.h"

namespace corvanta::data::domain::sound {

/// The domain of type "sound".
class CORVANTA_API NSoundDomain : public NDomain<NSoundNode, core::name::NStrictNamespace> {
 public:
  NSoundDomain(core::domain::NDomainManager const* manager,
               events::attribute_change::NMultiplexer const* multiplexer);
  ~NSoundDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
};

}  // namespace corvanta::data::domain::sound
