#pragma once

#include <functional>
#include <string>

#include "corvanta/core/uri/NPath.h"

namespace corvanta::core::zip {

/// What a pass is for.
enum NPassType : int {
  NPT_ARCHIVE = 256,  ///< the encrypted entries of a zip archive
};

/// Tells the pass of a file; it may ask the user for it. An empty text stands for none.
using NPassProvider = std::function<std::wstring(uri::NPath const& path, NPassType type)>;

/// Sets who knows the passes, for the whole process; an empty function goes back to nobody. May be
/// called from any thread, also by the provider itself.
CORVANTA_API void SetPassProvider(NPassProvider provider);

/// The pass of the file at `path`, from the provider; empty without one.
/// Fails: what the provider throws.
CORVANTA_API std::wstring GetPass(uri::NPath const& path, NPassType type);

}  // namespace corvanta::core::zip
