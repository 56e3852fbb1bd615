#include "corvanta/data/error_code/error_code.h"

namespace corvanta::data::error_code {

wchar_t const* const NE_SCENE_GRAPH_PATH = L"Scene Graph Path Error";
wchar_t const* const NE_SCENE_GRAPH_WALK = L"Scene Graph Walk Error";
wchar_t const* const NE_PROJECTION_NODE = L"Projection Node Error";
wchar_t const* const NE_KEY_FRAME_ANIMATION = L"Key Frame Animation Error";
wchar_t const* const NE_INTERPOLATOR = L"Interpolator Error";
wchar_t const* const NE_FIIMAGE = L"FIImage Error";

}  // namespace corvanta::data::error_code
