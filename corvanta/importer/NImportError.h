#pragma once

#include <stdexcept>

#include "corvanta/export.h"

namespace corvanta::importer {

/// A model file that can't be used; `what()` is the reason in UTF-8, on one line.
class CORVANTA_API NImportError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace corvanta::importer
