#include "corvanta/renderer/pass/draw_models.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "corvanta/renderer/NBillboard.h"

namespace corvanta::renderer {

namespace {

using VX_Math::Matrix;

void SetTransform(NSurfaceProgram const& program, NDrawItem const& item,
                  NViewpoint const& viewpoint) {
  if (item.model->GetBillboardType() == static_cast<long>(NB_NONE)) {
    program.SetTransform(item.global, item.normals);
  } else {
    Matrix const global = GetDrawnTransform(item, viewpoint);
    program.SetTransform(global, global.Inverse().Transpose());
  }
}

}  // namespace

void DrawParts(std::vector<NMeshPart> const& parts) {
  for (NMeshPart const& part : parts) {
    if (part.count == 0) continue;
    glBindVertexArray(part.vertexArray);
    if (part.isIndexed) {
      glDrawElements(GL_TRIANGLES, part.count, GL_UNSIGNED_INT, nullptr);
    } else {
      glDrawArrays(GL_TRIANGLES, 0, part.count);
    }
  }
}

Matrix GetDrawnTransform(NDrawItem const& item, NViewpoint const& viewpoint) {
  auto const type = static_cast<NBillboard>(item.model->GetBillboardType());
  return type == NB_NONE ? item.global : TurnBillboard(item.global, viewpoint, type);
}

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
  for (auto const& [depth, index] : depths) indices.push_back(index);
  return indices;
}

void DrawModels(NSurfaceProgram const& program, NPicture const& picture,
                std::vector<std::size_t> const& indices) {
  NMaterialParameters const* current = nullptr;
  for (std::size_t const index : indices) {
    NDrawItem const& item = picture.scene.GetItems()[index];
    NResolvedModel const& model = picture.scene.GetModels()[index];
    if (current != model.material) {
      current = model.material;
      program.SetMaterial(*current, picture.ambientLight, picture.lamps, picture.environment);
    }
    SetTransform(program, item, picture.viewpoint);
    bool const isWireframe = item.model->IsWired();
    if (isWireframe) program.SetWireframe(true);
    DrawParts(model.parts);
    if (isWireframe) program.SetWireframe(false);
  }
}

}  // namespace corvanta::renderer
