#include "corvanta/data/operators/animation/NKeyFrameAnimationError.h"

#include "corvanta/data/error_code/error_code.h"

namespace corvanta::data::operators::animation {

NKeyFrameAnimationError::~NKeyFrameAnimationError() = default;

wchar_t const* NKeyFrameAnimationError::GetErrorCodeImpl() const {
  return error_code::NE_KEY_FRAME_ANIMATION;
}

}  // namespace corvanta::data::operators::animation
