#pragma once

#include <stdexcept>

namespace corvanta::app {

/// A picture that can't be drawn; `what()` is the reason in UTF-8, one line.
class NRenderError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace corvanta::app
