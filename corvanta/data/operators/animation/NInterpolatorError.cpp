#include "corvanta/data/operators/animation/NInterpolatorError.h"

#include "corvanta/data/error_code/error_code.h"

namespace corvanta::data::operators::animation {

NInterpolatorError::~NInterpolatorError() = default;

wchar_t const* NInterpolatorError::GetErrorCodeImpl() const { return error_code::NE_INTERPOLATOR; }

}  // namespace corvanta::data::operators::animation
