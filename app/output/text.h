#pragma once

#include <string_view>

#include "corvanta/core/text/message.h"

namespace corvanta::app {

using core::text::NumberText;
using core::text::OneLine;
using core::text::Plural;
using core::text::Quoted;

/// Prints "corvanta: subject: reason" on stderr, as one line.
void PrintError(std::string_view subject, std::string_view reason);
/// Prints "corvanta: subject: note: note" in the same way: nothing has failed.
void PrintNote(std::string_view subject, std::string_view note);

}  // namespace corvanta::app
