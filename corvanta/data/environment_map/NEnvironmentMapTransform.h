#pragma once

#include "corvanta/core/reference_countable/NReferenceCountable.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::data::environment_map {

/// Gives the rotation of an environment map whenever it is asked. Derived by the map's owner.
class CORVANTA_API NEnvironmentMapTransform
    : public core::reference_countable::NReferenceCountable {
 public:
  ~NEnvironmentMapTransform() override;

  VX_Math::Matrix GetTransform() const { return GetTransformImpl(); }

 private:
  virtual VX_Math::Matrix GetTransformImpl() const = 0;
};

}  // namespace corvanta::data::environment_map
