#include "corvanta/importer/NVariants.h"

#include <algorithm>
#include <iterator>

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/placement.h"

namespace corvanta::importer {

NVariants::NVariants(neutral::NSceneView const& scene, NMaterials& materials,
                     NVertexColors const& colors)
    : m_scene(scene), m_materials(materials), m_colors(colors) {
  auto const meshes = scene.Get<neutral::NMesh>();
  auto const count = static_cast<std::size_t>(
      std::count_if(meshes.begin(), meshes.end(),
                    [](neutral::NMesh const& mesh) { return mesh.variants.count != 0; }));
  if (count != 0 && scene.Get<neutral::NVariant>().size() > neutral::kMostItems / count) {
    throw NImportError("its variants have more than " + std::to_string(neutral::kMostItems) +
                       " materials");
  }
}

void NVariants::AddModel(std::size_t number,
                         data::domain::scenegraph::item::NSceneGraphModelNode& model) {
  auto const& mesh = m_scene.Get<neutral::NMesh>()[number];
  if (mesh.variants.count == 0) return;
  auto& choice = m_switches[number];
  if (!choice) choice = CreateSwitch(number);
  choice->AddModel(model);
}

NVariants::SwitchPointer NVariants::CreateSwitch(std::size_t number) const {
  auto const& mesh = m_scene.Get<neutral::NMesh>()[number];
  std::vector<std::uint64_t> chosen(m_scene.Get<neutral::NVariant>().size(), mesh.material);
  for (neutral::NVariantUse const& use : m_scene.Get(mesh.variants)) {
    chosen[use.variant] = use.material;
  }
  SwitchPointer const choice(new data::switches::NMaterialSwitch);
  SetName(*choice, m_scene.GetText(mesh.name));
  for (unsigned i = 0; i != chosen.size(); ++i) {
    choice->AddMaterial(*m_materials.GetMaterial(chosen[i], m_colors.Has(number)), i);
  }
  return choice;
}

std::vector<std::string> NVariants::GetNames() const {
  std::vector<std::string> names;
  for (neutral::NVariant const& variant : m_scene.Get<neutral::NVariant>()) {
    names.push_back(m_scene.GetString(variant.name));
  }
  return names;
}

std::vector<NVariants::SwitchPointer> NVariants::GetSwitches() const {
  std::vector<SwitchPointer> switches;
  std::transform(m_switches.begin(), m_switches.end(), std::back_inserter(switches),
                 [](auto const& entry) { return entry.second; });
  return switches;
}

}  // namespace corvanta::importer
