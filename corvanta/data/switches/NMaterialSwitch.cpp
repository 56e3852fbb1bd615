#include "corvanta/data/switches/NMaterialSwitch.h"

#include <iterator>

#include "corvanta/core/detail/positions.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/switches/NMaterialSwitchListener.h"

namespace corvanta::data::switches {

using domain::material::NMaterialNode;
using domain::scenegraph::item::NSceneGraphModelNode;

namespace {

constexpr unsigned int kNoMaterial = 0xFFFFFFFF;

template <class References, class Node>
unsigned int FindPosition(References const& references, Node const& node) {
  unsigned int position = 0;
  for (auto const& reference : references) {
    if (reference.Get().get() == &node) return position;
    ++position;
  }
  return kNoMaterial;
}

}  // namespace

struct NMaterialSwitch::Block {
  std::list<MaterialReference> materials;
  std::set<ModelReference> models;
};

NMaterialSwitch::NMaterialSwitch() : m_block(new Block) {}

NMaterialSwitch::~NMaterialSwitch() = default;

std::list<NMaterialSwitch::MaterialReference> const& NMaterialSwitch::GetMaterials()
    const noexcept {
  return m_block->materials;
}

bool NMaterialSwitch::AddMaterial(MaterialReference const& material, unsigned int index) {
  if (!core::detail::InsertAt(m_block->materials, material, index)) return false;
  NotifyObservers([](NMaterialSwitchListener& listener) { listener.SignalAddMaterial(); });
  return true;
}

bool NMaterialSwitch::RemoveMaterial(unsigned int index) {
  if (!core::detail::EraseAt(m_block->materials, index)) return false;
  NotifyRemove();
  return true;
}

void NMaterialSwitch::RemoveMaterial(MaterialReference const& material) {
  MaterialReference const removed = material;  // may be in the list itself
  m_block->materials.remove(removed);
  NotifyRemove();
}

void NMaterialSwitch::NotifyRemove() const {
  NotifyObservers([](NMaterialSwitchListener& listener) { listener.SignalRemoveMaterial(); });
}

unsigned int NMaterialSwitch::GetMaterialIndex(NMaterialNode const& material) const {
  return FindPosition(m_block->materials, material);
}

std::set<NMaterialSwitch::ModelReference> const& NMaterialSwitch::GetModels() const noexcept {
  return m_block->models;
}

bool NMaterialSwitch::AddModel(ModelReference const& model) {
  return m_block->models.insert(model).second;
}

bool NMaterialSwitch::RemoveModel(ModelReference const& model) {
  return m_block->models.erase(model) == 1;
}

unsigned int NMaterialSwitch::GetModelIndex(NSceneGraphModelNode const& model) const {
  return FindPosition(m_block->models, model);
}

NMaterialSwitchListener::~NMaterialSwitchListener() = default;

}  // namespace corvanta::data::switches
