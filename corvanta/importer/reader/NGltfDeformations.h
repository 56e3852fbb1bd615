#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "corvanta/importer/neutral/NSceneWriter.h"
#include "corvanta/importer/reader/NGltfAccessors.h"
#include "corvanta/importer/reader/NGltfNodes.h"
#include "corvanta/importer/reader/gltf_model.h"

namespace corvanta::importer::reader {

/// Puts skins and morph targets of a glTF 2 file into the neutral form. What can't be read is left
/// out, and a note.
class NGltfDeformations {
 public:
  /// The accessors' numbers of a primitive's vertices.
  using Vertices = std::vector<std::uint32_t>;

  /// Requires: all of these stay until `writer` has written.
  NGltfDeformations(tinygltf::Model const& model, NGltfAccessors const& accessors,
                    neutral::NSceneWriter& writer)
      : m_model(model), m_accessors(accessors), m_writer(writer) {}

  /// All skins of the file, by their numbers.
  void AddSkins(NGltfNodes const& nodes);

  /// What moves the vertices of `primitive`: gives `mesh` influences and targets. `vertices` are
  /// those of `mesh`; null where they are the accessors' first `count`.
  void AddTo(tinygltf::Primitive const& primitive, std::shared_ptr<Vertices const> const& vertices,
             std::size_t count, neutral::NMesh& mesh);

  /// Gives `node` the skin and the weights of `source`, behind its meshes.
  void SetUp(tinygltf::Node const& source, neutral::NNode& node);

  std::vector<std::string> GetNotes() const;

 private:
  struct Weights;
  struct Target;

  void AddInfluences(std::shared_ptr<Weights const> const& weights, neutral::NMesh& mesh);
  neutral::NRange<neutral::NOffset> AddOffsets(std::shared_ptr<Target const> const& target);

  tinygltf::Model const& m_model;
  NGltfAccessors const& m_accessors;
  neutral::NSceneWriter& m_writer;
  std::size_t m_unboundCount = 0;    // skins that lack matrices
  std::size_t m_unheldCount = 0;     // primitives whose joints or weights can't be read
  std::size_t m_unlikeCount = 0;     // morph targets that can't be read or have another length
  std::size_t m_uncoloredCount = 0;  // morph targets that change something else
  std::size_t m_surplusCount = 0;    // morph targets beyond the most
  std::size_t m_missingCount = 0;    // nodes whose skin isn't there
};

}  // namespace corvanta::importer::reader
