#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "corvanta/importer/neutral/NSceneWriter.h"
#include "corvanta/importer/reader/NGltfAccessors.h"
#include "corvanta/importer/reader/NGltfDeformations.h"
#include "corvanta/importer/reader/NGltfMaterials.h"
#include "corvanta/importer/reader/gltf_model.h"

namespace corvanta::importer::reader {

/// Puts the meshes of a glTF 2 file into the neutral form, a primitive each. Strips and fans become
/// triangles, strips and loops of lines lines. A primitive has those vertices alone that it uses.
class NGltfMeshes {
 public:
  /// Requires: all of these stay until `writer` has written.
  NGltfMeshes(tinygltf::Model const& model, NGltfAccessors const& accessors,
              NGltfMaterials& materials, NGltfDeformations& deformations,
              neutral::NSceneWriter& writer)
      : m_model(model),
        m_accessors(accessors),
        m_materials(materials),
        m_deformations(deformations),
        m_writer(writer) {}

  /// The neutral form's numbers of what the file's mesh `number` draws; made at the first call.
  /// Fails: throws NImportError for a mesh with an index that names no vertex, a vertex that isn't
  /// finite, or arrays shorter than they say.
  std::vector<std::uint32_t> const& GetPrimitives(std::size_t number);

  bool HasTriangles() const { return m_hasTriangles; }
  std::vector<std::string> GetNotes() const;

 private:
  struct Source;

  std::uint32_t AddPrimitive(tinygltf::Primitive const& primitive, std::string const& name);
  std::shared_ptr<Source> Read(tinygltf::Primitive const& primitive) const;
  void ReadUvs(tinygltf::Primitive const& primitive, Source& source) const;
  // Null for all that the accessors have.
  static std::shared_ptr<NGltfDeformations::Vertices const> GetUsed(
      std::shared_ptr<Source const> const& source);
  void CheckIndices(Source& source);
  void Reduce(Source& source);

  tinygltf::Model const& m_model;
  NGltfAccessors const& m_accessors;
  NGltfMaterials& m_materials;
  NGltfDeformations& m_deformations;
  neutral::NSceneWriter& m_writer;
  std::map<std::size_t, std::vector<std::uint32_t>> m_primitives;
  std::vector<std::uint32_t> m_newNumbers;  // of vertices, while a primitive is reduced
  bool m_hasTriangles = false;
  std::size_t m_coloredCount = 0;  // primitives whose vertex colours would be seen
};

}  // namespace corvanta::importer::reader
