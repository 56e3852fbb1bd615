#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "corvanta/export.h"

namespace corvanta::importer {

/// What reading one model file may take.
struct NImportLimits {
  std::uint64_t memory;               // bytes
  std::chrono::milliseconds timeout;  // from the start of the program that reads
};

/// The limits of the files to come; at first half of the machine's memory, and a minute.
CORVANTA_API NImportLimits GetImportLimits();
CORVANTA_API void SetImportLimits(NImportLimits const& limits);

/// The program that reads model files in a process of its own: where SetReaderProgram put it, or
/// else libexec/corvanta/corvanta-read in the tree in which the library is installed.
/// Fails: empty if none is found.
CORVANTA_API std::wstring GetReaderProgram();
/// Sets another program; an empty path goes back to the one beside the library.
CORVANTA_API void SetReaderProgram(std::wstring const& path);

}  // namespace corvanta::importer
