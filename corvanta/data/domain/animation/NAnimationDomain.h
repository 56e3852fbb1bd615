#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/animation/NAnimationNode.h"

namespace corvanta::data::domain::animation {

/// The domain of type "animation".
class CORVANTA_API NAnimationDomain : public NDomain<NAnimationNode, core::name::NStrictNamespace> {
 public:
  NAnimationDomain(core::domain::NDomainManager const* manager,
                   events::attribute_change::NMultiplexer const* multiplexer);
  ~NAnimationDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
};

}  // namespace corvanta::data::domain::animation
