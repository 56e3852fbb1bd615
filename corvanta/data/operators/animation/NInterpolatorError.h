#pragma once

#include "corvanta/core/error/NException.h"
#include "corvanta/export.h"

namespace corvanta::data::operators::animation {

/// Two neighbouring keys share a time, so that no span can lie between them.
/// Code "Interpolator Error".
class CORVANTA_API NInterpolatorError : public core::error::NException {
 public:
  ~NInterpolatorError() override;

 private:
  wchar_t const* GetErrorCodeImpl() const override;
};

}  // namespace corvanta::data::operators::animation
