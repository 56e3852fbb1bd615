#pragma once

#include <assimp/scene.h>

#include <map>
#include <string>
#include <vector>

#include "corvanta/importer/neutral/NSceneWriter.h"
#include "corvanta/importer/reader/NAssimpDeformations.h"

namespace corvanta::importer::reader {

/// Puts a scene of Assimp's into the neutral form.
class NAssimpConverter {
 public:
  /// `multipliesColor`: whether in this format a material's colour counts beside its picture.
  /// `hasWeights`: whether in this format the weights of morph targets are those at rest.
  /// Requires: `scene` passed CheckScene, its faces are triangles, and it stays until `writer` has
  /// written.
  NAssimpConverter(aiScene const& scene, bool multipliesColor, neutral::NSceneWriter& writer,
                   bool hasWeights = true)
      : m_scene(scene),
        m_multipliesColor(multipliesColor),
        m_writer(writer),
        m_deformations(scene, hasWeights, writer) {}

  void Convert();
  /// What the neutral form can't say, in UTF-8.
  std::vector<std::string> GetNotes() const { return m_deformations.GetNotes(); }

 private:
  using ByName = std::multimap<std::string, unsigned>;

  void AddMesh(aiMesh const& mesh);
  void AddFaces(aiMesh const& source, neutral::NMesh& mesh);
  void AddMaterial(aiMaterial const& material);
  std::vector<neutral::NTexture> GetTextures(aiMaterial const& material);
  void AddPicture(aiTexture const& picture);
  std::uint32_t GetPicture(aiString const& name);
  void AddLight(aiLight const& light);
  void AddCamera(aiCamera const& camera);
  void AddNodes();
  void AddNode(aiNode const& node, ByName& lights, ByName& cameras);
  void AddAnimation(aiAnimation const& animation);
  neutral::NChannel GetChannel(aiNodeAnim const& keys);

  neutral::NText AddText(aiString const& text);

  aiScene const& m_scene;
  bool const m_multipliesColor;
  neutral::NSceneWriter& m_writer;
  NAssimpDeformations m_deformations;
  std::vector<bool> m_isColored;  // of each material, whether a mesh of it has vertex colours
  std::map<std::string, std::uint32_t> m_pictures;  // those outside of the file
  // The numbers of nodes in the neutral form; of several of one name, that of the uppermost and
  // first.
  NAssimpDeformations::NodesByName m_nodesByName;
  std::vector<aiNode const*> m_nodes;  // by these numbers
};

}  // namespace corvanta::importer::reader
