#include "corvanta/renderer/scene/NResolvedScene.h"

#include <cmath>

namespace corvanta::renderer {

namespace {

using VX_Math::Box3;

bool IsFinite(Box3 const& box) {
  VX_Math::Vec3 const size = box.max - box.min;
  return std::isfinite(size.x) && std::isfinite(size.y) && std::isfinite(size.z);
}

}  // namespace

NUploads NResolvedScene::GetUploads() const {
  return {m_meshes.GetMeshUploadCount(), m_meshes.GetCoordsUploadCount(),
          m_textures.GetUploadCount()};
}

Box3 NResolvedScene::GetBox() const {
  Box3 box;
  for (NDrawItem const& item : GetItems()) {
    auto const geometry = item.model->GetGeometryNode();
    if (!item.hasFiniteTransform || !geometry) continue;
    Box3 part = item.model->GetBoundingBoxWithoutChildren();
    if (!part.IsEmpty() && !IsFinite(part)) part = NMeshes::GetFiniteBox(*geometry);
    if (part.IsEmpty()) continue;
    part.Transform(item.global);
    if (IsFinite(part)) box.ExtendBy(part);
  }
  return box;
}

void NResolvedScene::Clear() {
  m_list.Clear();
  m_models.clear();
  m_meshParts.clear();
  m_parts.clear();
}

void NResolvedScene::Update(data::domain::scenegraph::tree::NSceneGraphTreeNode& tree,
                            NDirtyFlags const& flags) {
  bool const walked = m_list.Update(tree, flags);
  bool const materials = flags.materials || !flags.changedMaterials.empty();
  if (flags.materials || !flags.changedImages.empty()) m_textures.Forget(flags.changedImages);
  if (materials || walked) ForgetParameters(flags);
  m_meshes.Forget(flags);
  if (!walked && !materials && !flags.projections) return;
  m_meshParts.clear();
  m_parts.clear();
  m_models.resize(GetItems().size());
  for (std::size_t i = 0; i != m_models.size(); ++i) Resolve(i);
}

NMaterialParameters const& NResolvedScene::GetParameters(
    boost::intrusive_ptr<Material> const& material) {
  if (!material) return m_default;
  auto const [entry, isNew] = m_parameters.try_emplace(material.get());
  if (isNew) entry->second = {*material, ReadMaterialParameters(*material, m_textures)};
  return entry->second.parameters;
}

void NResolvedScene::ForgetParameters(NDirtyFlags const& flags) {
  std::erase_if(m_parameters, [&flags](auto const& entry) {
    return flags.materials || flags.changedMaterials.contains(entry.first) ||
           !entry.second.material.Get();
  });
}

void NResolvedScene::Resolve(std::size_t index) {
  NDrawItem const& item = GetItems()[index];
  NResolvedModel& model = m_models[index];
  model.material = &GetParameters(item.model->GetMaterialNode());
  auto const geometry = item.model->GetGeometryNode();
  bool const isOwn = geometry && NMeshes::IsProjected(model.material->mappings);
  std::vector<NMeshPart> const*& shared = m_meshParts[{geometry.get(), model.material}];
  if (isOwn || shared == nullptr) {
    shared = &m_parts.emplace_back();
    if (geometry) m_parts.back() = m_meshes.Get(item, *geometry, model.material->mappings);
  }
  model.parts = shared;
}

}  // namespace corvanta::renderer
