#pragma once

#include "corvanta/core/error/NException.h"
#include "corvanta/export.h"

namespace corvanta::data::operators::animation {

/// For callers that refuse a curve. Nothing in the library throws it.
/// Code "Key Frame Animation Error".
class CORVANTA_API NKeyFrameAnimationError : public core::error::NException {
 public:
  ~NKeyFrameAnimationError() override;

 private:
  wchar_t const* GetErrorCodeImpl() const override;
};

}  // namespace corvanta::data::operators::animation
