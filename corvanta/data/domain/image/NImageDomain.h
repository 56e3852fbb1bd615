#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/image/NImageNode.h"

namespace corvanta::data::domain::image {

/// The domain of type "image".
class CORVANTA_API NImageDomain : public NDomain<NImageNode, core::name::NStrictNamespace> {
 public:
  NImageDomain(core::domain::NDomainManager const* manager,
               events::attribute_change::NMultiplexer const* multiplexer);
  ~NImageDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
};

}  // namespace corvanta::data::domain::image
