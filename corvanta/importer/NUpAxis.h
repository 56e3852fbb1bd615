#pragma once

#include <cstdint>

namespace corvanta::importer {

/// The axis of a model file that points up.
enum NUpAxis : std::uint64_t { NUA_X, NUA_Y, NUA_Z };

}  // namespace corvanta::importer
