#pragma once

#include <string>

#include "corvanta/export.h"

namespace corvanta::data::domain {

/// The type strings of the domains. They compare by address with NDomainBase::GetType.
extern CORVANTA_API wchar_t const* const DT_ANIMATION;
extern CORVANTA_API wchar_t const* const DT_CAMERA;
extern CORVANTA_API wchar_t const* const DT_ENVIRONMENT;
extern CORVANTA_API wchar_t const* const DT_GEOMETRY;
extern CORVANTA_API wchar_t const* const DT_IMAGE;
extern CORVANTA_API wchar_t const* const DT_LIGHT;
extern CORVANTA_API wchar_t const* const DT_MATERIAL;
extern CORVANTA_API wchar_t const* const DT_MOVIE;
extern CORVANTA_API wchar_t const* const DT_PROJECTION;
extern CORVANTA_API wchar_t const* const DT_SCENE;
extern CORVANTA_API wchar_t const* const DT_SCENEGRAPH_ITEM;
extern CORVANTA_API wchar_t const* const DT_SCENEGRAPH_TREE;
extern CORVANTA_API wchar_t const* const DT_SOUND;
extern CORVANTA_API wchar_t const* const DT_TEXTURE;
extern CORVANTA_API wchar_t const* const DT_LIGHT_ENV;

/// The DT_ pointer of the type string with the characters of `name`.
/// Fails: null for text that is no domain type.
CORVANTA_API wchar_t const* DomainTypeFromString(wchar_t const* name);
CORVANTA_API wchar_t const* DomainTypeFromString(std::wstring const& name);

}  // namespace corvanta::data::domain
