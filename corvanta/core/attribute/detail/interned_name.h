#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "corvanta/export.h"

namespace corvanta::core::attribute::detail {

/// The number of an attribute name: names are interned once for the process and compared by it.
using NNameIndex = std::uint32_t;
inline constexpr NNameIndex kNoName = 0;

/// What a change of the attribute touches beyond itself, a bit each; set when the name's owner is
/// first used.
enum NNameMark : unsigned {
  NNM_ITEM_TRANSFORM = 1u << 0,
  NNM_ITEM_BOX = 1u << 1,
  NNM_GLOBAL_TRANSFORM = 1u << 2,
  NNM_TREE_CONTROL = 1u << 3,
  NNM_COORD_CONVERSION = 1u << 4,
  NNM_PROJECTION_TRANSFORM = 1u << 5,
  NNM_PROJECTION_METHOD = 1u << 6,
};

/// The number of `name`, given now if it is new; kNoName when the table of a million names is full.
/// Cost: one hash; a lock only for a new name.
CORVANTA_API NNameIndex InternName(std::wstring_view name);
/// The number of `name`, or kNoName if nobody has interned it.
/// Cost: one hash, no lock.
CORVANTA_API NNameIndex FindName(std::wstring_view name) noexcept;
/// The text behind a number that InternName gave; it lasts as long as the process.
CORVANTA_API std::wstring const& GetNameText(NNameIndex index) noexcept;

/// The marks of a name, as bits of NNameMark.
CORVANTA_API unsigned GetNameMarks(NNameIndex index) noexcept;
CORVANTA_API void AddNameMarks(std::wstring_view name, unsigned marks);

}  // namespace corvanta::core::attribute::detail
