#include "corvanta/renderer/NChanges.h"

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

NChanges::~NChanges() = default;

NMarks NChanges::Take() {
  NMarks none;
  none.structure = none.places = none.materials = none.projections = false;
  return std::exchange(m_marks, std::move(none));
}

void NChanges::OnAttributeChange(core::attribute::NAttributeHost& host,
                                 core::attribute::NAttribute const& attribute) {
  if (auto const* const item =
          dynamic_cast<domain::scenegraph::item::NSceneGraphItemNode const*>(&host)) {
    std::wstring const& name = attribute.GetName();
    if (name == domain::scenegraph::item::AN_IS_VISIBLE) {
      m_marks.structure = true;
    } else if (domain::scenegraph::IsSceneGraphTransformAttribute(name)) {
      m_marks.movedItems.insert(item);
    }
  } else if (auto const* const material =
                 dynamic_cast<domain::material::NMaterialNode const*>(&host)) {
    m_marks.changedMaterials.insert(material);
  } else if (dynamic_cast<domain::scenegraph::tree::NSceneGraphTreeNode const*>(&host) != nullptr) {
    m_marks.places = true;
  } else if (auto const* const image = dynamic_cast<domain::image::NImageNode const*>(&host)) {
    m_marks.changedImages.insert(image);
    m_marks.materials = true;
  } else if (dynamic_cast<domain::texture::NTextureNode const*>(&host) != nullptr) {
    m_marks.materials = true;
  } else if (dynamic_cast<domain::projection::NProjectionNode const*>(&host) != nullptr) {
    m_marks.projections = true;
    m_marks.materials = true;
  }
}

void NChanges::OnGeometryChange(domain::scenegraph::item::NSceneGraphModelNode const&,
                                boost::intrusive_ptr<domain::geometry::NGeometryNode> const&) {
  m_marks.structure = true;
}

void NChanges::OnGeometryChange(domain::geometry::NGeometryNode const&,
                                domain::geometry::NSurface const& surface,
                                domain::geometry::NGeometryChangeType type) {
  if (type == domain::geometry::NGCT_SURFACE_CHANGED) {
    m_marks.changedSurfaces.insert(surface.GetCreationNumber());
  }
  m_marks.structure = true;
}

void NChanges::OnAddTexture(domain::material::NMaterialNode const& material, unsigned int) {
  m_marks.changedMaterials.insert(&material);
}

void NChanges::OnRemoveTexture(
    domain::material::NMaterialNode const& material,
    boost::intrusive_ptr<domain::texture::NTextureNode> const&,
    boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const&) {
  m_marks.changedMaterials.insert(&material);
}

void NChanges::OnEnvironmentMapImageChange(domain::material::NMaterialNode const& material) {
  m_marks.changedMaterials.insert(&material);
}

void NChanges::OnEnvironmentMapImageTypeChange(domain::material::NMaterialNode const& material) {
  m_marks.changedMaterials.insert(&material);
}

void NChanges::OnMaterialChange(domain::scenegraph::item::NSceneGraphModelNode const&,
                                boost::intrusive_ptr<domain::material::NMaterialNode> const&) {
  m_marks.structure = true;
}

void NChanges::OnAddChild(domain::scenegraph::item::NSceneGraphItemNode const&,
                          domain::scenegraph::item::NSceneGraphItemNode const&) {
  m_marks.structure = true;
}

void NChanges::OnRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const&,
                             domain::scenegraph::item::NSceneGraphItemNode const&) {
  m_marks.structure = true;
}

void NChanges::OnSceneGraphTreeChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const&,
    boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const&) {
  m_marks.structure = true;
}

void NChanges::OnSceneGraphTreeRootChange(
    domain::scenegraph::tree::NSceneGraphTreeNode const&,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const&) {
  m_marks.structure = true;
}

void NChanges::OnSceneGraphTreeRootChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const&,
    domain::scenegraph::tree::NSceneGraphTreeNode const&,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const&) {
  m_marks.structure = true;
}

void NChanges::OnTextureImageChange(domain::texture::NTextureNode const&) {
  m_marks.materials = true;
}

}  // namespace corvanta::renderer
