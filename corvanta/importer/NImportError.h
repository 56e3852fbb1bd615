#pragma once

#include <stdexcept>

#include "corvanta/export.h"

namespace corvanta::importer {

/// A model file that can't be used; `what()` is the reason in UTF-8, on one line.
class CORVANTA_API NImportError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a file is refused with whose name and content tell of no format that is known.
inline constexpr char kUnknownFormat[] = "its format isn't one that can be read";

}  // namespace corvanta::importer
