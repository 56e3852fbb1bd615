#pragma once

#include "corvanta/platform/convert.h"

namespace corvanta::core::text {

using platform::ToNarrow;
using platform::ToWide;

}  // namespace corvanta::core::text
