#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text for a terminal or a pipe: UTF-8, one line.
namespace corvanta::app {

/// `text` without line breaks and other control characters; each becomes a space.
std::string OneLine(std::string_view text);

/// `text` in quotes; control characters, quotes and backslashes as escapes.
std::string Quoted(std::string_view text);

/// The shortest text that reads as the same number; "nan", "inf" and "-inf" where it is none.
std::string NumberText(double value);
std::string NumberText(float value);

/// "1 mesh has", "3 meshes have": all that agrees with a number is put by this.
std::string Plural(std::size_t count, char const* one, char const* many);

/// Prints "corvanta: subject: reason" on stderr, as one line.
void PrintError(std::string_view subject, std::string_view reason);
/// Prints "corvanta: subject: note: note" in the same way: nothing has failed.
void PrintNote(std::string_view subject, std::string_view note);

}  // namespace corvanta::app
