#pragma once

#include "corvanta/importer/neutral/scene.h"
#include "corvanta/importer/reader/gltf_model.h"

namespace corvanta::importer::reader {

/// How a material takes its colour and what varies over it.
struct NGltfSurface {
  bool isUnlit = false;
  bool isSpecularGlossiness = false;
};
NGltfSurface GetSurface(tinygltf::Material const& material);

/// Gives `to` the colours and numbers of a glTF 2 material, by the table in docs/materials.md.
void SetSurface(tinygltf::Material const& material, neutral::NMaterial& to);

}  // namespace corvanta::importer::reader
