#pragma once

#include <string_view>

#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/export.h"

namespace corvanta::renderer {

/// Whether pictures depend on the attribute `name` of `host`, which may still need others to be
/// seen: an exponent needs a highlight. Those of a light count, which are drawn by way of the light
/// environment that ConvertToLightEnv makes of them.
///
/// docs/attributes.md marks the attributes for which this is true.
CORVANTA_API bool IsDrawn(core::attribute::NAttributeHost const& host, std::wstring_view name);

}  // namespace corvanta::renderer
