#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "corvanta/export.h"

/// Pieces of messages for people: UTF-8, on one line.
namespace corvanta::core::text {

/// `text` without line breaks and other control characters; each becomes a space.
CORVANTA_API std::string OneLine(std::string_view text);

/// `text` in quotes; control characters, quotes and backslashes as escapes.
CORVANTA_API std::string Quoted(std::string_view text);

/// The shortest text that reads as the same number; "nan", "inf" and "-inf" where it is none.
CORVANTA_API std::string NumberText(double value);
CORVANTA_API std::string NumberText(float value);

/// "1 mesh has", "3 meshes have": all that agrees with a number is put by this.
CORVANTA_API std::string Plural(std::size_t count, char const* one, char const* many);

}  // namespace corvanta::core::text
