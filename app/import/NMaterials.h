#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <vector>

#include "app/import/NPictures.h"
#include "app/import/neutral/NSceneView.h"
#include "app/scene/NDocument.h"
#include "corvanta/data/domain/material/NMaterialNode.h"

namespace corvanta::app {

/// The material nodes of a model file, with their textures. Only those that are asked for are made.
class NMaterials {
 public:
  NMaterials(NDocument& document, neutral::NSceneView const& scene, NPictures& pictures);

  /// The node of the file's material `index`; made at the first call.
  boost::intrusive_ptr<data::domain::material::NMaterialNode> GetMaterial(std::size_t index);

 private:
  void AddTextures(neutral::NMaterial const& source, data::domain::material::NMaterialNode& node);

  NDocument& m_document;
  neutral::NSceneView const& m_scene;
  NPictures& m_pictures;
  std::vector<boost::intrusive_ptr<data::domain::material::NMaterialNode>> m_nodes;
};

}  // namespace corvanta::app
