#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "corvanta/importer/neutral/NSceneWriter.h"
#include "corvanta/importer/reader/NGltfAccessors.h"
#include "corvanta/importer/reader/NGltfDeformations.h"
#include "corvanta/importer/reader/NGltfMaterials.h"
#include "corvanta/importer/reader/NGltfMeshes.h"
#include "corvanta/importer/reader/NGltfNodes.h"
#include "corvanta/importer/reader/gltf_model.h"

namespace corvanta::importer::reader {

/// Puts a glTF 2 file into the neutral form.
class NGltfConverter {
 public:
  /// Requires: `model` stays until `writer` has written; so does this.
  /// Fails: throws NImportError for a file that isn't sound.
  NGltfConverter(tinygltf::Model const& model, neutral::NSceneWriter& writer);

  /// Fails: throws NImportError for a file that isn't sound, or shows nothing.
  void Convert();
  /// What the neutral form can't say, in UTF-8.
  std::vector<std::string> GetNotes() const;

 private:
  void AddLight(tinygltf::Light const& light);
  void AddCamera(tinygltf::Camera const& camera);
  void AddNode(tinygltf::Node const& source, std::size_t number, std::size_t childCount);
  void AddAnimations();
  template <class T>
  neutral::NNumbers AddOne(tinygltf::Node const& node, int number);

  tinygltf::Model const& m_model;
  neutral::NSceneWriter& m_writer;
  NGltfAccessors const m_accessors;
  NGltfNodes const m_nodes;
  NGltfMaterials m_materials;
  NGltfDeformations m_deformations;
  NGltfMeshes m_meshes;
  std::size_t m_itemCount = 0;
};

}  // namespace corvanta::importer::reader
