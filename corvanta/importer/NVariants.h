#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/switches/NMaterialSwitch.h"
#include "corvanta/export.h"
#include "corvanta/importer/NMaterials.h"
#include "corvanta/importer/neutral/NSceneView.h"

namespace corvanta::importer {

/// The material switches of a model file with variants: one for each mesh that looks different in
/// some, named after it, with the material of each variant in the order of the variants.
class CORVANTA_API NVariants {
 public:
  using SwitchPointer = boost::intrusive_ptr<data::switches::NMaterialSwitch>;

  /// Fails: throws NImportError where the meshes have more than neutral::kMostItems choices.
  NVariants(neutral::NSceneView const& scene, NMaterials& materials, NVertexColors const& colors);

  /// Tells of a model of the scene's mesh `number`.
  void AddModel(std::size_t number, data::domain::scenegraph::item::NSceneGraphModelNode& model);

  /// The variants' names, in UTF-8.
  std::vector<std::string> GetNames() const;
  /// Those that a model was told of, in the order of the scene's meshes.
  std::vector<SwitchPointer> GetSwitches() const;

 private:
  SwitchPointer CreateSwitch(std::size_t number) const;

  neutral::NSceneView const& m_scene;
  NMaterials& m_materials;
  NVertexColors const& m_colors;
  std::map<std::size_t, SwitchPointer> m_switches;  // by meshes
};

}  // namespace corvanta::importer
