#pragma once

#include "corvanta/export.h"

namespace corvanta::core::attribute {
class NAttributeHost;
}
namespace corvanta::core::color {
class ColorTransform;
}

namespace corvanta::core::color::utility {

/// Puts the colour that is in the attributes named `r`, `g` and `b` through `transform`.
/// Raises: an attribute change for each of the three, in this order.
/// Fails: does nothing if one of the three is missing.
CORVANTA_API void TranslateRGB(attribute::NAttributeHost& host, wchar_t const* r, wchar_t const* g,
                               wchar_t const* b, ColorTransform const& transform);

}  // namespace corvanta::core::color::utility
