#include "corvanta/core/color/ColorTransform.h"

namespace corvanta::core::color {

ColorTransform::~ColorTransform() = default;

}  // namespace corvanta::core::color
