#pragma once

#include "corvanta/importer/neutral/scene.h"
#include "corvanta/importer/reader/gltf_model.h"

namespace corvanta::importer::reader {

/// How a material takes its colour and what varies over it.
struct NGltfSurface {
  bool isUnlit = false;
  bool isSpecularGlossiness = false;
  bool isBlended = false;
  /// Of the mode MASK, what the colour texture's alpha * 255 has at least where the surface is
  /// seen; 0 where all of it is.
  long cutOff = 0;
  double metalness = 0.0, roughness = 1.0;  // the factors
};
NGltfSurface GetSurface(tinygltf::Material const& material);

/// Gives `to` the colours and numbers of a glTF 2 material, by the table in docs/materials.md.
void SetSurface(tinygltf::Material const& material, neutral::NMaterial& to);

}  // namespace corvanta::importer::reader
