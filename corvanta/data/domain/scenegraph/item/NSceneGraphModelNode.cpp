#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/observer/detail/removal_count.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/material/detail/usage.h"

namespace corvanta::data::domain::scenegraph::item {

using core::node::NNodeReference;
using geometry::NGeometryNode;
using material::NMaterialNode;
using VX_Math::Box3;

wchar_t const* const AN_IS_WIRED = L"isWired";

struct NSceneGraphModelNode::Block {
  core::attribute::NAttributeHost& host;
  // A renderer's setting that writers don't save.
  core::attribute::NTypedAttribute<bool> isWired{host, AN_IS_WIRED, false, false};
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/scenegraph/item/model_item_attributes.def"

  NNodeReference<NGeometryNode> geometry{};
  NNodeReference<NMaterialNode> material{};
  Box3 geometryBox{};
  bool isGeometryBoxDirty = true;
  // The count of removals when it was last seen to observe its geometry.
  std::uint64_t observedAt = kNever;

  static constexpr std::uint64_t kNever = ~std::uint64_t{0};
};

#define CORVANTA_ROWS_BODIES NSceneGraphModelNode
#include "corvanta/data/domain/scenegraph/item/model_item_attributes.def"

NSceneGraphModelNode::NSceneGraphModelNode(
    core::node::NNodeID const& id, core::domain::NDomainBase* domain,
    events::attribute_change::NMultiplexer const* multiplexer)
    : NSceneGraphItemNode(id, domain, multiplexer,
                          core::string_table::GetString(core::string_table::DATA_MODEL)),
      m_block(new Block{*this}) {}

NSceneGraphModelNode::~NSceneGraphModelNode() { RemoveMaterial(); }

bool NSceneGraphModelNode::IsWired() const { return m_block->isWired.Get(); }

void NSceneGraphModelNode::SetIsWiredFlag(bool isWired) { m_block->isWired.Set(isWired); }

boost::intrusive_ptr<NGeometryNode> NSceneGraphModelNode::GetGeometryNode() const {
  auto geometry = m_block->geometry.Get();
  auto const removalCount = core::observer::detail::GetRemovalCount();
  if (geometry && m_block->observedAt != removalCount) {
    geometry->AddObserver(
        static_cast<geometry::NGeometryChangeListener&>(const_cast<NSceneGraphModelNode&>(*this)));
    m_block->observedAt = removalCount;
  }
  return geometry;
}

NNodeReference<NGeometryNode> const& NSceneGraphModelNode::GetGeometryRef() const {
  return m_block->geometry;
}

void NSceneGraphModelNode::SetGeometryNode(NNodeReference<NGeometryNode> const& geometry) {
  NNodeReference<NGeometryNode> const given = geometry;
  auto const oldGeometry = m_block->geometry.Get();
  if (oldGeometry) {
    oldGeometry->RemoveObserver(static_cast<geometry::NGeometryChangeListener&>(*this));
  }
  m_block->geometry = given;
  m_block->observedAt = Block::kNever;
  m_block->isGeometryBoxDirty = true;
  DirtyBoundingBox();
  ModelEvents::NotifyObservers(
      [&](auto& listener) { listener.SignalGeometryChange(*this, oldGeometry); });
}

boost::intrusive_ptr<NMaterialNode> NSceneGraphModelNode::GetMaterialNode() const {
  return m_block->material.Get();
}

NNodeReference<NMaterialNode> const& NSceneGraphModelNode::GetMaterialRef() const {
  return m_block->material;
}

void NSceneGraphModelNode::SetMaterial(NNodeReference<NMaterialNode> const& material) {
  if (GetDomainManager() == nullptr) return;
  material::detail::NUse use(GetDomainManager(), material);
  SetMaterial(material, use);
}

void NSceneGraphModelNode::SetMaterial(NNodeReference<NMaterialNode> const& material,
                                       material::detail::NUse& use) {
  core::domain::NDomainManager const* const manager = GetDomainManager();
  if (manager == nullptr) return;
  // The caller's was counted for another manager if a listener has moved the model since.
  bool const isCounted = use.Keep(manager) || !material;
  if (!isCounted) material::detail::AddUse(*manager, material);
  NNodeReference<NMaterialNode> const given = material;
  auto const oldMaterial = GetMaterialNode();
  RemoveMaterial();
  m_block->material = given;
  ModelEvents::NotifyObservers(
      [&](auto& listener) { listener.SignalMaterialChange(*this, oldMaterial); });
}

void NSceneGraphModelNode::RemoveMaterial() {
  if (m_block->material) material::detail::RemoveUse(GetDomainManager(), m_block->material);
}

Box3 const& NSceneGraphModelNode::GetBoundingBoxWithoutChildren() const {
  Block& block = *m_block;
  if (block.isGeometryBoxDirty) {
    Box3 box;
    if (auto const geometry = GetGeometryNode()) {
      for (auto const& surface : geometry->GetSurfaces()) {
        for (structs::XYZ const& point : surface->GetCoords()) {
          box.ExtendBy(VX_Math::Vec3(point.x, point.y, point.z));
        }
      }
    }
    block.geometryBox = box;
    block.isGeometryBoxDirty = false;
  }
  return block.geometryBox;
}

void NSceneGraphModelNode::CalculateBoundingBox(Box3& box, VX_Math::Matrix const& accumulated,
                                                VX_Math::Matrix const& base) const {
  NSceneGraphItemNode::CalculateBoundingBox(box, accumulated, base);
  box.ExtendBy(GetBoundingBoxWithoutChildren());
}

void NSceneGraphModelNode::OnGeometryChangeImpl(NGeometryNode const&, geometry::NSurface const&,
                                                geometry::NGeometryChangeType) {
  m_block->isGeometryBoxDirty = true;
  DirtyBoundingBox();
}

void NSceneGraphModelNode::CopyTo(NSceneGraphModelNode& target) const {
  NNodeReference<NGeometryNode> const geometry = m_block->geometry;
  NNodeReference<NMaterialNode> const material = m_block->material;
  material::detail::NUse use(target.GetDomainManager(), material);
  auto const held = core::reference_countable::Hold(target);
  NSceneGraphItemNode::CopyTo(target);
  target.SetGeometryNode(geometry);
  target.SetMaterial(material, use);
}

wchar_t const* NSceneGraphModelNode::GetSceneGraphItemTypeImpl() const { return SGIT_MODEL; }

}  // namespace corvanta::data::domain::scenegraph::item
