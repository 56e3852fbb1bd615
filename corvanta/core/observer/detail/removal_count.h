#pragma once

#include <cstdint>

#include "corvanta/export.h"

namespace corvanta::core::observer::detail {

/// How often an observer was taken away, anywhere: while this stands, who was registered is still.
CORVANTA_API std::uint64_t GetRemovalCount() noexcept;

}  // namespace corvanta::core::observer::detail
