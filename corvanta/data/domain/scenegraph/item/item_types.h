#pragma once

#include "corvanta/export.h"

namespace corvanta::data::domain::scenegraph::item {

/// The item kinds. They compare by address with NSceneGraphItemNode::GetSceneGraphItemType.
extern CORVANTA_API wchar_t const* const SGIT_GROUP;
extern CORVANTA_API wchar_t const* const SGIT_MODEL;
extern CORVANTA_API wchar_t const* const SGIT_LIGHT;
extern CORVANTA_API wchar_t const* const SGIT_CAMERA;
extern CORVANTA_API wchar_t const* const SGIT_REFERENCE;

}  // namespace corvanta::data::domain::scenegraph::item
