#include "corvanta/renderer/pass/draw_models.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <utility>

#include "corvanta/renderer/NBillboard.h"

namespace corvanta::renderer {

namespace {

using VX_Math::Matrix;

bool IsMirrored(Matrix const& m) {
  return m(0, 0) * (m(1, 1) * m(2, 2) - m(1, 2) * m(2, 1)) -
             m(0, 1) * (m(1, 0) * m(2, 2) - m(1, 2) * m(2, 0)) +
             m(0, 2) * (m(1, 0) * m(2, 1) - m(1, 1) * m(2, 0)) <
         0.0f;
}

NSurfaceInstance MakeInstance(NDrawItem const& item, NViewpoint const& viewpoint) {
  if (item.model->GetBillboardType() == static_cast<long>(NB_NONE)) {
    return {item.global, item.normals};
  }
  Matrix const global = GetDrawnTransform(item, viewpoint);
  return {global, global.Inverse().Transpose()};
}

/// What instances that are drawn at once have in common.
struct Kind {
  NMaterialParameters const* material;
  std::vector<NMeshPart> const* parts;
  bool isWired, isMirrored, isCulled;

  friend bool operator==(Kind const&, Kind const&) = default;
};

/// How far ahead of the camera the near plane is, where it is farthest.
float GetNear(NViewpoint const& viewpoint) {
  Matrix const back = viewpoint.projection.Inverse();
  float near = 0.0f;
  for (float const x : {-1.0f, 1.0f}) {
    for (float const y : {-1.0f, 1.0f}) {
      VX_Math::Vec3 corner(x, y, 0.0f);
      back.MultVecMatrix(corner, corner);
      near = std::max(near, -corner.z);
    }
  }
  return near;
}

/// Whether an item is a solid that the camera is outside of, and that the near plane doesn't cut:
/// none of its back faces is seen.
bool IsSeenFromOutside(NDrawItem const& item, std::vector<NMeshPart> const& parts,
                       NViewpoint const& viewpoint, float near) {
  bool const isSolid =
      std::all_of(parts.begin(), parts.end(), [](NMeshPart const& part) { return part.isSolid; });
  if (!isSolid || item.model->GetBillboardType() != static_cast<long>(NB_NONE)) return false;
  VX_Math::Box3 box = item.model->GetBoundingBoxWithoutChildren();
  box.Transform(item.global * viewpoint.view);
  constexpr float kMargin = 1.01f;
  return -box.max.z > kMargin * near;
}

Kind GetKind(NPicture const& picture, std::size_t index, float near) {
  NResolvedModel const& model = picture.scene.GetModels()[index];
  NDrawItem const& item = picture.scene.GetItems()[index];
  NMaterialParameters const& material = *model.material;
  bool const isWired = item.model->IsWired();
  bool const isOpaque = !material.isTransparent && material.cutOff == 0.0f;
  bool const isCulled =
      !isWired && (material.isOneSided ||
                   (isOpaque && IsSeenFromOutside(item, *model.parts, picture.viewpoint, near)));
  // Whether it is mirrored matters only to what has two sides.
  bool const hasSides = isCulled || material.isTransparent;
  return {&material, model.parts, isWired, hasSides && IsMirrored(item.global), isCulled};
}

void Upload(NInstances& instances, NPicture const& picture,
            std::vector<std::size_t> const& indices) {
  std::vector<NSurfaceInstance> values;
  values.reserve(indices.size());
  for (std::size_t const index : indices) {
    values.push_back(MakeInstance(picture.scene.GetItems()[index], picture.viewpoint));
  }
  instances.Upload(values);
}

void SetKind(NSurfacePrograms& programs, Kind const& kind) {
  programs.Use(*kind.material, kind.isWired);
  glPolygonMode(GL_FRONT_AND_BACK, kind.isWired ? GL_LINE : GL_FILL);
  glFrontFace(kind.isMirrored ? GL_CW : GL_CCW);
}

bool Has(Kind const& kind, bool areTriangles) {
  return std::any_of(kind.parts->begin(), kind.parts->end(), [areTriangles](NMeshPart const& part) {
    return part.IsOfTriangles() == areTriangles;
  });
}

// Units: pixels of a picture of 600 rows; those of smaller pictures are no smaller.
constexpr float kLineWidth = 1.5f, kPointSize = 3.0f, kUsualRows = 600.0f;

/// Draws the lines and points of instances, wider in larger pictures.
void DrawLines(NSurfacePrograms& programs, NInstances& instances, Kind const& kind,
               std::size_t begin, std::size_t count) {
  if (!Has(kind, false)) return;
  programs.UseForLines(*kind.material);
  std::array<GLint, 4> viewport;
  glGetIntegerv(GL_VIEWPORT, viewport.data());
  float const scale = std::max(static_cast<float>(viewport[3]) / kUsualRows, 1.0f);
  glPointSize(kPointSize * scale);
  // Contexts of the strictest kind refuse any other width.
  if (AreLinesWide()) glLineWidth(kLineWidth * scale);
  instances.Draw(*kind.parts, begin, count, false);
  glLineWidth(1.0f);
}

void ResetKind() {
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
  glDisable(GL_CULL_FACE);
  glCullFace(GL_BACK);
  glFrontFace(GL_CCW);
  for (NTextureSlot const slot : kTextureSlots) glBindSampler(slot, 0);
}

/// Calls `draw(begin, end)` for each run of equal values of `get`.
template <class Get, class Draw>
void ForEachRun(std::size_t count, Get const& get, Draw const& draw) {
  for (std::size_t begin = 0; begin != count;) {
    auto const kind = get(begin);
    std::size_t end = begin + 1;
    while (end != count && get(end) == kind) ++end;
    draw(kind, begin, end);
    begin = end;
  }
}

/// The indices of the opaque or of the transparent models, the nearest first by their middles.
std::vector<std::size_t> SortByDepth(NPicture const& picture, bool areTransparent) {
  auto const& items = picture.scene.GetItems();
  auto const& models = picture.scene.GetModels();
  std::vector<std::pair<float, std::size_t>> depths;
  for (std::size_t i = 0; i != models.size(); ++i) {
    NDrawItem const& item = items[i];
    if (!item.hasFiniteTransform || models[i].material->isTransparent != areTransparent) continue;
    VX_Math::Vec3 center = item.model->GetBoundingBoxWithoutChildren().GetCenter();
    item.global.MultVecMatrix(center, center);
    picture.viewpoint.view.MultVecMatrix(center, center);
    depths.emplace_back(std::isfinite(center.z) ? -center.z : 0.0f, i);
  }
  std::sort(depths.begin(), depths.end());
  std::vector<std::size_t> indices;
  indices.reserve(depths.size());
  for (auto const& [depth, index] : depths) indices.push_back(index);
  return indices;
}

/// Brings the models of one mesh and material together, in the order of the first of each.
void GroupByMesh(NPicture const& picture, std::vector<std::size_t>& indices) {
  using Group = std::pair<NMaterialParameters const*, std::vector<NMeshPart> const*>;
  std::map<Group, std::size_t> groups;
  std::vector<std::pair<std::size_t, std::size_t>> grouped;
  grouped.reserve(indices.size());
  for (std::size_t const index : indices) {
    NResolvedModel const& model = picture.scene.GetModels()[index];
    auto const group = groups.emplace(Group(model.material, model.parts), groups.size()).first;
    grouped.emplace_back(group->second, index);
  }
  std::stable_sort(grouped.begin(), grouped.end(),
                   [](auto const& a, auto const& b) { return a.first < b.first; });
  std::transform(grouped.begin(), grouped.end(), indices.begin(),
                 [](auto const& entry) { return entry.second; });
}

}  // namespace

Matrix GetDrawnTransform(NDrawItem const& item, NViewpoint const& viewpoint) {
  auto const type = static_cast<NBillboard>(item.model->GetBillboardType());
  return type == NB_NONE ? item.global : TurnBillboard(item.global, viewpoint, type);
}

void DrawOpaqueModels(NSurfacePrograms& programs, NInstances& instances, NPicture const& picture) {
  std::vector<std::size_t> indices = SortByDepth(picture, false);
  GroupByMesh(picture, indices);
  Upload(instances, picture, indices);
  float const near = GetNear(picture.viewpoint);
  ForEachRun(
      indices.size(), [&](std::size_t i) { return GetKind(picture, indices[i], near); },
      [&](Kind const& kind, std::size_t begin, std::size_t end) {
        DrawLines(programs, instances, kind, begin, end - begin);
        if (!Has(kind, true)) return;
        SetKind(programs, kind);
        kind.isCulled ? glEnable(GL_CULL_FACE) : glDisable(GL_CULL_FACE);
        instances.Draw(*kind.parts, begin, end - begin);
      });
  ResetKind();
}

void DrawTransparentModels(NSurfacePrograms& programs, NInstances& instances,
                           NPicture const& picture) {
  std::vector<std::size_t> indices = SortByDepth(picture, true);
  if (indices.empty()) return;
  std::reverse(indices.begin(), indices.end());
  glEnable(GL_BLEND);
  glDepthMask(GL_FALSE);
  Upload(instances, picture, indices);
  for (std::size_t i = 0; i != indices.size(); ++i) {
    Kind const kind = GetKind(picture, indices[i], 0.0f);
    DrawLines(programs, instances, kind, i, 1);
    if (!Has(kind, true)) continue;
    SetKind(programs, kind);
    if (kind.isWired) {
      glDisable(GL_CULL_FACE);
      instances.Draw(*kind.parts, i, 1);
      continue;
    }
    glEnable(GL_CULL_FACE);
    for (GLenum const culled : {GL_FRONT, GL_BACK}) {
      if (culled == GL_FRONT && kind.material->isOneSided) continue;
      glCullFace(culled);
      instances.Draw(*kind.parts, i, 1);
    }
  }
  ResetKind();
  glDepthMask(GL_TRUE);
  glDisable(GL_BLEND);
}

void DrawFlats(NInstances& instances, NResolvedScene const& scene,
               std::vector<NFlatInstance> const& flats, std::vector<std::size_t> const& models,
               bool keepsOrder) {
  instances.Upload(flats);
  ForEachRun(
      flats.size(), [&](std::size_t i) { return scene.GetModels()[models[i]].parts; },
      [&](std::vector<NMeshPart> const* parts, std::size_t begin, std::size_t end) {
        if (!keepsOrder || parts->size() == 1) {
          instances.Draw(*parts, begin, end - begin);
          return;
        }
        for (std::size_t i = begin; i != end; ++i) instances.Draw(*parts, i, 1);
      });
}

void DrawEdges(NFlatProgram const& program, NInstances& instances, NPicture const& picture) {
  std::vector<NFlatInstance> flats;
  std::vector<std::size_t> models;
  for (std::size_t i = 0; i != picture.scene.GetModels().size(); ++i) {
    NDrawItem const& item = picture.scene.GetItems()[i];
    if (!item.hasFiniteTransform) continue;
    flats.emplace_back(GetDrawnTransform(item, picture.viewpoint),
                       std::array<float, 4>{0.0f, 0.0f, 0.0f, 0.6f});
    models.push_back(i);
  }
  program.Begin(picture.viewpoint);
  glEnable(GL_BLEND);
  glEnable(GL_POLYGON_OFFSET_LINE);
  // A line lies in the plane of its triangle, and must not be hidden by it.
  glPolygonOffset(1.0f, 1.0f);
  glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
  // The edge of two triangles is drawn twice, and seen once.
  glDepthFunc(GL_GREATER);
  DrawFlats(instances, picture.scene, flats, models, false);
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
  glDisable(GL_POLYGON_OFFSET_LINE);
  glDisable(GL_BLEND);
}

}  // namespace corvanta::renderer
