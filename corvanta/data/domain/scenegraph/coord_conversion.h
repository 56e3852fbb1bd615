#pragma once

#include <string>

#include "corvanta/export.h"

namespace corvanta::data::domain::scenegraph {

/// Whether `name` is the attribute that says how a tree's axes are converted: "coordConversion".
CORVANTA_API bool IsSceneGraphCoordConversionAttribute(wchar_t const* name);
inline bool IsSceneGraphCoordConversionAttribute(std::wstring const& name) {
  return IsSceneGraphCoordConversionAttribute(name.c_str());
}

}  // namespace corvanta::data::domain::scenegraph
