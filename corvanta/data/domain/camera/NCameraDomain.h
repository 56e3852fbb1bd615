#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/camera/NCameraNode.h"

namespace corvanta::data::domain::camera {

/// The domain of type "camera".
class CORVANTA_API NCameraDomain : public NDomain<NCameraNode, core::name::NStrictNamespace> {
 public:
  NCameraDomain(core::domain::NDomainManager const* manager,
                events::attribute_change::NMultiplexer const* multiplexer);
  ~NCameraDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
};

}  // namespace corvanta::data::domain::camera
