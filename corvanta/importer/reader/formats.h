#pragma once

#include <string>

namespace corvanta::importer::reader {

/// The formats that can be read, a line each: the name, what reads it, and the extensions of its
/// files, with tabs between and spaces between the extensions.
std::string ListFormats();

}  // namespace corvanta::importer::reader
