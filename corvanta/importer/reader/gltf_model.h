#pragma once

// The library that parses glTF 2, as all sources here see it: it opens no file, decodes no picture
// and unpacks meshes of KHR_draco_mesh_compression.
#define TINYGLTF_NO_FS
#define TINYGLTF_NO_STB_IMAGE
#define TINYGLTF_NO_STB_IMAGE_WRITE
#define TINYGLTF_NO_EXTERNAL_IMAGE
#define TINYGLTF_ENABLE_DRACO
#include <tiny_gltf.h>

#include <string>

#include "corvanta/importer/neutral/scene.h"

namespace corvanta::importer::reader {

/// Whether `number` is that of an element of `list`; files may hold any number.
template <class List>
bool IsIn(List const& list, int number) {
  return number >= 0 && static_cast<std::size_t>(number) < list.size();
}

/// An extension of a part of a file. Fails: null where it has none of that name.
inline tinygltf::Value const* FindExtension(tinygltf::ExtensionMap const& extensions,
                                            char const* name) {
  auto const found = extensions.find(name);
  return found != extensions.end() && found->second.IsObject() ? &found->second : nullptr;
}

/// A whole number of an extension. Fails: -1.
inline int GetWhole(tinygltf::Value const& object, char const* key) {
  if (!object.IsObject()) return -1;
  auto const& value = object.Get(key);
  return value.IsInt() ? value.GetNumberAsInt() : -1;
}

inline double GetNumber(tinygltf::Value const& object, char const* key, double otherwise) {
  if (!object.IsObject()) return otherwise;
  auto const& value = object.Get(key);
  return value.IsNumber() ? value.GetNumberAsDouble() : otherwise;
}

/// The name of an element, or else one that its place in the file gives.
inline std::string GetName(std::string const& name, char const* list, std::size_t number) {
  return name.empty() ? list + ('[' + std::to_string(number) + ']') : name;
}

}  // namespace corvanta::importer::reader
