#include "corvanta/data/domain/material/texture_mapping/NProjectionMapping.h"

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/material/texture_mapping/NTextureMapping.h"
#include "corvanta/data/domain/material/texture_mapping/detail/create_projector.h"
#include "corvanta/data/domain/material/texture_mapping/detail/seam.h"
#include "corvanta/data/domain/material/texture_mapping/map_surface.h"
#include "corvanta/data/domain/projection/NProjectionNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"

namespace corvanta::data::domain::material::texture_mapping {

using data::operators::projector::NProjector;
using projection::NCoordAdjustment;
using projection::NProjectionNode;
using structs::UVW;
using structs::XYZ;
using VX_Math::Matrix;

struct NProjectionMapping::Block {
  ModelToProjectionMap map;
};

/// What serves a model. The path is a copy and the node is held: taking a frame may reach
/// listeners, which may edit the map.
struct NProjectionMapping::Choice {
  ModelPath path{};
  boost::intrusive_ptr<NProjectionNode const> node{};
};

NProjectionMapping::NProjectionMapping() : m_block(new Block) {}

NProjectionMapping::~NProjectionMapping() = default;

NTextureMappingType NProjectionMapping::GetTypeImpl() const { return NTMT_PROJECTION; }

bool NProjectionMapping::AddProjectionData(ModelPath const& path,
                                           ProjectionReference const& projection) {
  return m_block->map.emplace(path, projection).second;
}

bool NProjectionMapping::ReplaceModel(ModelPath const& oldPath, ModelPath const& newPath) {
  auto const found = m_block->map.find(oldPath);
  if (found == m_block->map.end()) return false;
  ProjectionReference const projection = found->second;
  return ReplaceModel(oldPath, newPath, projection);
}

bool NProjectionMapping::ReplaceModel(ModelPath const& oldPath, ModelPath const& newPath,
                                      ProjectionReference const& projection) {
  ModelToProjectionMap& map = m_block->map;
  auto const found = map.find(oldPath);
  if (found == map.end()) return false;
  boost::intrusive_ptr<NProjectionNode const> const node = found->second.Get();
  if (oldPath == newPath) {
    found->second = projection;
    return true;
  }
  // The arguments may be in the map, so the erasure comes last.
  auto const [made, isNew] = map.emplace(newPath, projection);
  try {
    if (node) const_cast<NProjectionNode&>(*node).ReplaceModel(oldPath, newPath);
  } catch (...) {
    if (isNew) map.erase(made);
    throw;
  }
  map.erase(found);
  return isNew;
}

NProjectionMapping::ModelToProjectionMap const& NProjectionMapping::GetModelToProjectionMap()
    const {
  return m_block->map;
}

NProjectionMapping::Choice NProjectionMapping::Choose(ModelPath const& path) const {
  ModelToProjectionMap const& map = m_block->map;
  auto chosen = map.find(path);
  if (chosen == map.end() || !chosen->second.Get()) chosen = map.begin();
  if (chosen == map.end() || !chosen->first.GetNode()) return {};
  return {chosen->first, chosen->second.Get()};
}

namespace {

bool IsEmpty(NProjectionMapping::Vertices const& vertices) {
  return vertices.count == 0 || vertices.coords == nullptr || vertices.normals == nullptr;
}

/// The factor of the repetitions: the unit of the path's tree, where the node asks for it.
float GetUnit(NProjectionNode const& node, NProjectionMapping::ModelPath const& path) {
  if (node.IsUseSceneGraphUnit()) return 1.0f;
  auto const tree = path.GetTreeRef().Get();
  return tree ? static_cast<float>(tree->GetUnit()) : 1.0f;
}

}  // namespace

bool NProjectionMapping::ComputeTextureCoords(ModelPath const& path, Vertices const& vertices,
                                              Indices const& indices, std::vector<UVW>& coords,
                                              std::vector<unsigned int>& newIndices,
                                              std::vector<unsigned int>& vertexMap) const {
  if (IsEmpty(vertices) || indices.count == 0 || indices.indices == nullptr) return false;
  Choice const choice = Choose(path);
  if (!choice.node) return false;
  NProjectionNode const& node = *choice.node;
  coords.resize(vertices.count);
  auto const projector = detail::CreateProjector(node.GetProjectionMethod());
  if (!projector) return false;
  float const unit = GetUnit(node, choice.path);
  if (node.GetTargets().empty()) return false;

  Matrix const frame = node.GetModelToProjectionTransform(choice.path);
  Matrix const& transform = node.GetTransform();
  Matrix scale;
  transform.GetScale(scale);
  Matrix const toProjector = frame * transform.Inverse();
  // With the node's scale taken out again, the faces that a normal chooses don't depend on it.
  Matrix const normalToProjector = (toProjector * scale).Inverse().Transpose();
  projector->ProjectVertices(
      {vertices.count, vertices.coords, vertices.normals, toProjector, normalToProjector},
      coords.data());

  newIndices.clear();
  vertexMap.clear();
  if (projector->HasSeam()) {
    newIndices.assign(indices.indices, indices.indices + indices.count);
    detail::CutSeam(coords, newIndices, vertexMap);
  }
  NCoordAdjustment const adjustment = node.GetCoordAdjustment(unit);
  for (UVW& c : coords) adjustment.AdjustCoord(c.u, c.v, c.w, c.u, c.v, c.w);
  return true;
}

bool NProjectionMapping::ComputeTangents(ModelPath const& path, Vertices const& vertices,
                                         std::vector<XYZ>& tangents,
                                         std::vector<XYZ>& binormals) const {
  if (IsEmpty(vertices)) return false;
  Choice const choice = Choose(path);
  if (!choice.node) return false;
  NProjectionNode const& node = *choice.node;
  tangents.resize(vertices.count);
  binormals.resize(vertices.count);
  auto const projector = detail::CreateProjector(node.GetProjectionMethod());
  if (!projector) return false;

  Matrix const toProjector =
      node.GetModelToProjectionTransform(choice.path) * node.GetTransform().Inverse();
  Matrix const toModel = toProjector.Inverse();
  projector->ComputeTangentFrames(
      {vertices.count, vertices.coords, vertices.normals, toProjector, toModel.Transpose()},
      toModel, tangents.data(), binormals.data());
  NCoordAdjustment const adjustment = node.GetCoordAdjustment(1.0f);
  for (std::size_t i = 0; i != vertices.count; ++i) {
    XYZ& t = tangents[i];
    XYZ& b = binormals[i];
    adjustment.AdjustTangent(t.x, t.y, t.z, b.x, b.y, b.z);
  }
  return true;
}

NMappedCoords MapSurface(NProjectionMapping const& mapping,
                         NProjectionMapping::ModelPath const& path,
                         geometry::NSurface const& surface) {
  auto const& coords = surface.GetCoords();
  auto const& indices = surface.GetIndices();
  NMappedCoords mapped;
  if (coords.empty()) return mapped;
  mapping.ComputeTextureCoords(path,
                               {static_cast<unsigned int>(coords.size()), &coords.front().x,
                                &surface.GetNormals().front().x},
                               {static_cast<unsigned int>(indices.size()), indices.data()},
                               mapped.coords, mapped.indices, mapped.vertexMap);
  return mapped;
}

NTextureMapping::~NTextureMapping() = default;

}  // namespace corvanta::data::domain::material::texture_mapping
