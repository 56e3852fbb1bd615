#include "corvanta/core/detail/previous_value.h"

namespace corvanta::core::detail {

constinit thread_local NPreviousValue const* NPreviousValue::s_innermost = nullptr;

}  // namespace corvanta::core::detail
