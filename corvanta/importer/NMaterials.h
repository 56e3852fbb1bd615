#pragma once

#include <array>
#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <string>
#include <vector>

#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/export.h"
#include "corvanta/importer/NImportTarget.h"
#include "corvanta/importer/NPictures.h"
#include "corvanta/importer/neutral/NSceneView.h"

namespace corvanta::importer {

/// The material nodes of a model file, with their textures. Only those that are asked for are made.
class CORVANTA_API NMaterials {
 public:
  NMaterials(NImportTarget& target, neutral::NSceneView const& scene, NPictures& pictures);

  /// The node of the file's material `index`, with a texture of vertex colours where `isColored`;
  /// made at the first call.
  boost::intrusive_ptr<data::domain::material::NMaterialNode> GetMaterial(std::size_t index,
                                                                          bool isColored);
  /// What isn't shown as the file has it, in UTF-8.
  std::vector<std::string> GetNotes() const;

 private:
  void AddTextures(neutral::NMaterial const& source, data::domain::material::NMaterialNode& node,
                   bool isColored);

  NImportTarget& m_target;
  neutral::NSceneView const& m_scene;
  NPictures& m_pictures;
  // First without vertex colours, then with them.
  std::array<std::vector<boost::intrusive_ptr<data::domain::material::NMaterialNode>>, 2> m_nodes;
  std::size_t m_invisibleCount = 0;
};

}  // namespace corvanta::importer
