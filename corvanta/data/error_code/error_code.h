#pragma once

#include "corvanta/export.h"

/// The codes of the exceptions of corvanta::data, one for each class.
namespace corvanta::data::error_code {

CORVANTA_API extern wchar_t const* const NE_SCENE_GRAPH_PATH;
CORVANTA_API extern wchar_t const* const NE_SCENE_GRAPH_WALK;
CORVANTA_API extern wchar_t const* const NE_PROJECTION_NODE;
CORVANTA_API extern wchar_t const* const NE_KEY_FRAME_ANIMATION;
CORVANTA_API extern wchar_t const* const NE_INTERPOLATOR;
CORVANTA_API extern wchar_t const* const NE_FIIMAGE;

}  // namespace corvanta::data::error_code
