#pragma once

#include "corvanta/data/environment_map/NEnvironmentMapImageType.h"
#include "corvanta/export.h"

namespace corvanta::data::environment_map {

/// How the image in the file at `path` is likely to be laid out: by the size of the image, and a
/// cube map only where a DDS file says so.
/// Fails: rectangular for a file that can't be read.
CORVANTA_API NEnvironmentMapImageType GuessEnvironmentMapImageType(wchar_t const* path);

}  // namespace corvanta::data::environment_map
