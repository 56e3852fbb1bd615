#pragma once

#include <assimp/scene.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "corvanta/importer/neutral/NSceneWriter.h"

namespace corvanta::importer::reader {

/// Puts the bones and morph targets of a scene of Assimp's into the neutral form.
class NAssimpDeformations {
 public:
  /// Numbers of nodes in the neutral form.
  using NodesByName = std::unordered_map<std::string, std::uint32_t>;

  /// `hasWeights`: whether the weights of its targets are those at rest; else these are 0.
  /// Requires: `scene` passed CheckScene, and it stays until `writer` has written.
  NAssimpDeformations(aiScene const& scene, bool hasWeights, neutral::NSceneWriter& writer)
      : m_scene(scene),
        m_hasWeights(hasWeights),
        m_writer(writer),
        m_skins(scene.mNumMeshes, neutral::kNone) {}

  /// Gives `mesh` what moves the vertices of `source`, the scene's next mesh.
  void AddTo(aiMesh const& source, neutral::NMesh& mesh);
  /// Gives `node` the skins and weights of its meshes, which are in it already.
  void SetUp(aiNode const& source, neutral::NNode& node);
  /// Leads the bones to their nodes. Call it once, behind all meshes.
  void AddSkins(NodesByName const& nodes);

  struct Channels {
    std::vector<neutral::NWeightChannel> weights;
    std::size_t faultCount = 0;  // those that couldn't be read
    std::string firstFault;
  };
  /// The weights that an animation moves. `nodes` are by their numbers in the neutral form.
  Channels AddChannels(aiAnimation const& source, NodesByName const& byName,
                       std::vector<aiNode const*> const& nodes);

  std::vector<std::string> GetNotes() const;

 private:
  neutral::NMorphTarget AddTarget(aiMesh const& mesh, aiAnimMesh const& target);
  std::vector<std::uint32_t> FindNodes(std::string name, NodesByName const& byName,
                                       std::vector<aiNode const*> const& nodes) const;

  aiScene const& m_scene;
  bool const m_hasWeights;
  neutral::NSceneWriter& m_writer;
  std::vector<std::uint32_t> m_skins;  // by meshes
  std::vector<aiMesh const*> m_skinned;
  std::size_t m_meshCount = 0;
  std::size_t m_unlikeCount = 0;   // morph targets of another length
  std::size_t m_surplusCount = 0;  // morph targets beyond the most
};

}  // namespace corvanta::importer::reader
