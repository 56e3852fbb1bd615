#include "corvanta/renderer/scene/NChangeListener.h"

#include <utility>

#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/image/NImageNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/projection/NProjectionNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"
#include "corvanta/data/domain/scenegraph/transform.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/domain/texture/NTextureNode.h"

namespace corvanta::renderer {

namespace domain = data::domain;

NChangeListener::~NChangeListener() = default;

NDirtyFlags NChangeListener::TakeDirtyFlags() {
  NDirtyFlags none;
  none.structure = none.transforms = none.materials = none.projections = false;
  return std::exchange(m_dirtyFlags, std::move(none));
}

void NChangeListener::PutBack(NDirtyFlags flags) {
  std::swap(m_dirtyFlags, flags);
  m_dirtyFlags.structure |= flags.structure;
  m_dirtyFlags.transforms |= flags.transforms;
  m_dirtyFlags.materials |= flags.materials;
  m_dirtyFlags.projections |= flags.projections;
  m_dirtyFlags.movedItems.merge(flags.movedItems);
  m_dirtyFlags.changedMaterials.merge(flags.changedMaterials);
  m_dirtyFlags.changedImages.merge(flags.changedImages);
  m_dirtyFlags.changedSurfaces.merge(flags.changedSurfaces);
}

void NChangeListener::OnAttributeChange(core::attribute::NAttributeHost& host,
                                        core::attribute::NAttribute const& attribute) {
  if (auto const* const item =
          dynamic_cast<domain::scenegraph::item::NSceneGraphItemNode const*>(&host)) {
    std::wstring const& name = attribute.GetName();
    if (name == domain::scenegraph::item::AN_IS_VISIBLE) {
      m_dirtyFlags.structure = true;
    } else if (domain::scenegraph::IsSceneGraphTransformAttribute(name)) {
      m_dirtyFlags.movedItems.insert(item);
    }
  } else if (auto const* const material =
                 dynamic_cast<domain::material::NMaterialNode const*>(&host)) {
    m_dirtyFlags.changedMaterials.insert(material);
  } else if (dynamic_cast<domain::scenegraph::tree::NSceneGraphTreeNode const*>(&host) != nullptr) {
    m_dirtyFlags.transforms = true;
  } else if (auto const* const image = dynamic_cast<domain::image::NImageNode const*>(&host)) {
    m_dirtyFlags.changedImages.insert(image);
    m_dirtyFlags.materials = true;
  } else if (dynamic_cast<domain::texture::NTextureNode const*>(&host) != nullptr) {
    m_dirtyFlags.materials = true;
  } else if (dynamic_cast<domain::projection::NProjectionNode const*>(&host) != nullptr) {
    m_dirtyFlags.projections = true;
    m_dirtyFlags.materials = true;
  }
}

void NChangeListener::OnGeometryChange(
    domain::scenegraph::item::NSceneGraphModelNode const&,
    boost::intrusive_ptr<domain::geometry::NGeometryNode> const&) {
  m_dirtyFlags.structure = true;
}

void NChangeListener::OnGeometryChange(domain::geometry::NGeometryNode const&,
                                       domain::geometry::NSurface const& surface,
                                       domain::geometry::NGeometryChangeType type) {
  if (type == domain::geometry::NGCT_SURFACE_CHANGED) {
    m_dirtyFlags.changedSurfaces.insert(surface.GetCreationNumber());
  }
  m_dirtyFlags.structure = true;
}

void NChangeListener::OnAddTexture(domain::material::NMaterialNode const& material, unsigned int) {
  m_dirtyFlags.changedMaterials.insert(&material);
}

void NChangeListener::OnRemoveTexture(
    domain::material::NMaterialNode const& material,
    boost::intrusive_ptr<domain::texture::NTextureNode> const&,
    boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const&) {
  m_dirtyFlags.changedMaterials.insert(&material);
}

void NChangeListener::OnEnvironmentMapImageChange(domain::material::NMaterialNode const& material) {
  m_dirtyFlags.changedMaterials.insert(&material);
}

void NChangeListener::OnEnvironmentMapImageTypeChange(
    domain::material::NMaterialNode const& material) {
  m_dirtyFlags.changedMaterials.insert(&material);
}

void NChangeListener::OnMaterialChange(
    domain::scenegraph::item::NSceneGraphModelNode const&,
    boost::intrusive_ptr<domain::material::NMaterialNode> const&) {
  m_dirtyFlags.structure = true;
}

void NChangeListener::OnAddChild(domain::scenegraph::item::NSceneGraphItemNode const&,
                                 domain::scenegraph::item::NSceneGraphItemNode const&) {
  m_dirtyFlags.structure = true;
}

void NChangeListener::OnRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const&,
                                    domain::scenegraph::item::NSceneGraphItemNode const&) {
  m_dirtyFlags.structure = true;
}

void NChangeListener::OnSceneGraphTreeChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const&,
    boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const&) {
  m_dirtyFlags.structure = true;
}

void NChangeListener::OnSceneGraphTreeRootChange(
    domain::scenegraph::tree::NSceneGraphTreeNode const&,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const&) {
  m_dirtyFlags.structure = true;
}

void NChangeListener::OnSceneGraphTreeRootChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const&,
    domain::scenegraph::tree::NSceneGraphTreeNode const&,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const&) {
  m_dirtyFlags.structure = true;
}

void NChangeListener::OnTextureImageChange(domain::texture::NTextureNode const&) {
  m_dirtyFlags.materials = true;
}

}  // namespace corvanta::renderer
