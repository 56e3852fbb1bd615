#pragma once

#include <stdexcept>

namespace corvanta::app {

/// A model file that can't be used; `what()` is the reason in UTF-8, on one line.
class NImportError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace corvanta::app
