#pragma once

#include <cstdint>

#include "corvanta/core/attribute/detail/interned_name.h"
#include "corvanta/export.h"

namespace corvanta::core::attribute::detail {

/// An effect of a name: silent writes of attributes with it are counted.
inline constexpr NNameEffects kCountsSilentWrites = 1u << 31;

/// How often such an attribute was written without notification, its first value not counted: while
/// this stands, what was read from it by somebody who hears of the others is still so.
CORVANTA_API std::uint64_t GetSilentWriteCount() noexcept;

}  // namespace corvanta::core::attribute::detail
