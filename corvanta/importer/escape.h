#pragma once

#include <string>

#include "corvanta/export.h"

namespace corvanta::importer {

/// A URI's text with "%20" and its like as the characters that they stand for.
CORVANTA_API std::string Unescape(std::string const& text);

}  // namespace corvanta::importer
