#pragma once

#include <memory>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/geometry/NGeometryChangeListener.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"
#include "corvanta/data/events/scene_graph_model/NListener.h"

namespace corvanta::data::domain::material::detail {
class NUse;
}

namespace corvanta::data::domain::scenegraph::item {

/// How a model turns towards the camera; for the renderer.
enum NBillboardType : long { NBT_DEFAULT = 0 };

extern CORVANTA_API wchar_t const* const AN_IS_WIRED;
#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/scenegraph/item/model_item_attributes.def"

/// Shows a geometry with a material. Owns neither.
///
/// It subscribes to the geometry's changes when somebody reads the geometry, which the box does.
class CORVANTA_API NSceneGraphModelNode
    : public NSceneGraphItemNode,
      public geometry::NGeometryChangeListener,
      public core::observer::NObservable<NSceneGraphModelNode,
                                         events::scene_graph_model::NListener> {
 public:
  NSceneGraphModelNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                       events::attribute_change::NMultiplexer const* multiplexer);
  ~NSceneGraphModelNode() override;

  using Hierarchy =
      core::observer::NObservable<NSceneGraphItemNode, events::scene_graph_hierarchy::NListener>;
  using ModelEvents =
      core::observer::NObservable<NSceneGraphModelNode, events::scene_graph_model::NListener>;
  using Hierarchy::AddObserver;
  using Hierarchy::RemoveObserver;
  using ModelEvents::AddObserver;
  using ModelEvents::RemoveObserver;

  bool IsWired() const;
  void SetIsWiredFlag(bool isWired);
#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/scenegraph/item/model_item_attributes.def"

  /// Fails: null when the reference is empty, the node has gone, or it is no geometry.
  boost::intrusive_ptr<geometry::NGeometryNode> GetGeometryNode() const;
  core::node::NNodeReference<geometry::NGeometryNode> const& GetGeometryRef() const;
  /// Raises: SignalGeometryChange with the old geometry, always.
  void SetGeometryNode(core::node::NNodeReference<geometry::NGeometryNode> const& geometry);

  /// Fails: null when the reference is empty, the node has gone, or it is no material.
  boost::intrusive_ptr<material::NMaterialNode> GetMaterialNode() const;
  core::node::NNodeReference<material::NMaterialNode> const& GetMaterialRef() const;
  /// Keeps the counts of material::IsUsed. Does nothing for a model without a domain manager.
  /// Raises: SignalMaterialChange with the old material.
  void SetMaterial(core::node::NNodeReference<material::NMaterialNode> const& material);
  /// The same with a use that was counted ahead.
  /// Cost: no memory, if it was counted for this model's manager.
  void SetMaterial(core::node::NNodeReference<material::NMaterialNode> const& material,
                   material::detail::NUse& use);

  /// The box of this model's geometry in its own frame.
  VX_Math::Box3 const& GetBoundingBoxWithoutChildren() const;

  /// Gives `target` the item's values and caches, then the geometry and the material.
  /// Raises: both signals of the model on `target`.
  void CopyTo(NSceneGraphModelNode& target) const;

 private:
  struct Block;

  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }
  wchar_t const* GetSceneGraphItemTypeImpl() const override;
  void CalculateBoundingBox(VX_Math::Box3& box, VX_Math::Matrix const& accumulated,
                            VX_Math::Matrix const& base) const override;
  void OnGeometryChangeImpl(geometry::NGeometryNode const& geometry,
                            geometry::NSurface const& surface,
                            geometry::NGeometryChangeType type) override;
  void RemoveMaterial();

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::scenegraph::item
