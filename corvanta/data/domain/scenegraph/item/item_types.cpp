#include "corvanta/data/domain/scenegraph/item/item_types.h"

namespace corvanta::data::domain::scenegraph::item {

wchar_t const* const SGIT_GROUP = L"group";
wchar_t const* const SGIT_MODEL = L"model";
wchar_t const* const SGIT_LIGHT = L"light";
wchar_t const* const SGIT_CAMERA = L"camera";
wchar_t const* const SGIT_REFERENCE = L"reference";

}  // namespace corvanta::data::domain::scenegraph::item
