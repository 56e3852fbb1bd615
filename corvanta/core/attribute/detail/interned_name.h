#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "corvanta/export.h"

namespace corvanta::core::attribute::detail {

/// The number of an attribute name: names are interned once for the process and compared by it.
using NNameIndex = std::uint32_t;
inline constexpr NNameIndex kNoName = 0;

/// What a change of an attribute makes out of date beyond itself, as a set of bits. The layers
/// above say what each bit means (data/domain/detail/attribute_effects.h); here they are only kept.
using NNameEffects = unsigned;

/// The number of `name`, given now if it is new; kNoName when the table of a million names is full.
/// `effects` are added to those that the name has already from hosts of other classes.
/// Cost: one hash; a lock only for a new name.
CORVANTA_API NNameIndex InternName(std::wstring_view name, NNameEffects effects = 0);
/// The number of `name`, or kNoName if nobody has interned it.
/// Cost: one hash, no lock.
CORVANTA_API NNameIndex FindName(std::wstring_view name) noexcept;
/// The text behind a number that InternName gave; it lasts as long as the process.
CORVANTA_API std::wstring const& GetNameText(NNameIndex index) noexcept;

/// The effects that a name was interned with.
/// Cost: no lock.
CORVANTA_API NNameEffects GetNameEffects(NNameIndex index) noexcept;

}  // namespace corvanta::core::attribute::detail
