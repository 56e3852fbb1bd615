#pragma once

#include <stdexcept>

#include "corvanta/export.h"

namespace corvanta::renderer {

/// Why a picture can't be drawn; `what()` is the reason in UTF-8, one line.
class CORVANTA_API NRenderError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace corvanta::renderer
