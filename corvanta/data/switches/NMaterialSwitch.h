#pragma once

#include <list>
#include <memory>
#include <set>

#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/switches/NMaterialSwitchListener.h"
#include "corvanta/export.h"

namespace corvanta::data::switches {

/// A named, ordered list of materials to choose from, and the models that the choice applies to.
/// Applying it is for the caller. Hold it by `boost::intrusive_ptr`.
///
/// A material may be in the list several times, and what is in here may have gone.
class CORVANTA_API NMaterialSwitch
    : public core::name::NNamedObject,
      public core::observer::NObservable<NMaterialSwitch, NMaterialSwitchListener> {
 public:
  using MaterialReference = core::node::NNodeReference<domain::material::NMaterialNode>;
  using ModelReference = core::node::NNodeReference<domain::scenegraph::item::NSceneGraphModelNode>;

  NMaterialSwitch();
  ~NMaterialSwitch() override;

  std::list<MaterialReference> const& GetMaterials() const noexcept;
  /// Inserts before the entry now at `index`.
  /// Raises: SignalAddMaterial.
  /// Fails: false if `index` is greater than the number of entries.
  bool AddMaterial(MaterialReference const& material, unsigned int index);
  /// Raises: SignalRemoveMaterial.
  /// Fails: false if there is no entry at `index`.
  bool RemoveMaterial(unsigned int index);
  /// Removes every entry of `material`.
  /// Raises: SignalRemoveMaterial, once, also if there was none.
  void RemoveMaterial(MaterialReference const& material);
  /// The position of the first entry of `material`; those that have gone count.
  /// Fails: 0xFFFFFFFF if it has none.
  unsigned int GetMaterialIndex(domain::material::NMaterialNode const& material) const;

  std::set<ModelReference> const& GetModels() const noexcept;
  /// Raises: nothing.
  /// Fails: false if the model is there.
  bool AddModel(ModelReference const& model);
  /// Raises: nothing.
  /// Fails: false if the model isn't there.
  bool RemoveModel(ModelReference const& model);
  /// The position of `model` in the set's order.
  /// Fails: 0xFFFFFFFF if it isn't there.
  unsigned int GetModelIndex(domain::scenegraph::item::NSceneGraphModelNode const& model) const;

 private:
  struct Block;

  void NotifyRemove() const;

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::switches
