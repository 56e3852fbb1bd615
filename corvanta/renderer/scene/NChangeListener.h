#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstdint>
#include <unordered_set>

#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/events/NEventListener.h"

namespace corvanta::renderer {

/// What events named since the flags were taken last. Nodes are distinguished by their addresses,
/// which are compared and never dereferenced.
struct NDirtyFlags {
  bool structure = true;    // items were added, removed, shown or hidden
  bool transforms = true;   // all of them
  bool materials = true;    // all of them
  bool projections = true;  // projected texture coordinates
  std::unordered_set<data::domain::scenegraph::item::NSceneGraphItemNode const*> movedItems;
  std::unordered_set<data::domain::material::NMaterialNode const*> changedMaterials;
  std::unordered_set<data::domain::image::NImageNode const*> changedImages;
  std::unordered_set<std::uint64_t> changedSurfaces;  // creation numbers
};

/// The listener of a renderer: sets a dirty flag for each event that a picture depends on, and
/// reads nothing. A flag stays set until it is taken.
class NChangeListener final : public data::events::NEventListener {
 public:
  /// All flags since the last call, which are reset; everything at the first.
  NDirtyFlags TakeDirtyFlags();
  /// Sets `flags` again, beside those of later events; for what they say couldn't be done.
  void PutBack(NDirtyFlags flags);

 private:
  ~NChangeListener() override;

  void OnAttributeChange(core::attribute::NAttributeHost& host,
                         core::attribute::NAttribute const& attribute) override;
  void OnGeometryChange(
      data::domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<data::domain::geometry::NGeometryNode> const& oldGeometry) override;
  void OnGeometryChange(data::domain::geometry::NGeometryNode const& geometry,
                        data::domain::geometry::NSurface const& surface,
                        data::domain::geometry::NGeometryChangeType type) override;
  void OnAddTexture(data::domain::material::NMaterialNode const& material,
                    unsigned int index) override;
  void OnRemoveTexture(
      data::domain::material::NMaterialNode const& material,
      boost::intrusive_ptr<data::domain::texture::NTextureNode> const& texture,
      boost::intrusive_ptr<data::domain::material::texture_mapping::NTextureMapping> const& mapping)
      override;
  void OnEnvironmentMapImageChange(data::domain::material::NMaterialNode const& material) override;
  void OnEnvironmentMapImageTypeChange(
      data::domain::material::NMaterialNode const& material) override;
  // What an environment shows is read for each picture.
  void OnEnvironmentMapImageChange(data::domain::environment::NEnvironmentNode const&) override {}
  void OnEnvironmentMapImageTypeChange(
      data::domain::environment::NEnvironmentNode const&) override {}
  void OnMaterialChange(
      data::domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<data::domain::material::NMaterialNode> const& oldMaterial) override;
  void OnAddChild(data::domain::scenegraph::item::NSceneGraphItemNode const& parent,
                  data::domain::scenegraph::item::NSceneGraphItemNode const& child) override;
  void OnRemoveChild(data::domain::scenegraph::item::NSceneGraphItemNode const& parent,
                     data::domain::scenegraph::item::NSceneGraphItemNode const& child) override;
  void OnSceneGraphTreeChange(
      data::domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree)
      override;
  void OnSceneGraphTreeRootChange(
      data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot)
      override;
  void OnSceneGraphTreeRootChange(
      data::domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot)
      override;
  void OnTextureImageChange(data::domain::texture::NTextureNode const& texture) override;

  NDirtyFlags m_dirtyFlags;
};

}  // namespace corvanta::renderer
