#include "corvanta/renderer/pass/NFloorPass.h"

#include <cmath>

#include "corvanta/renderer/pass/NShadowPass.h"
#include "corvanta/renderer/scene/floor_geometry.h"

namespace corvanta::renderer {

namespace {

using data::domain::environment::NEnvironmentNode;
using VX_Math::Matrix;

/// A floor has the scale of the model that shows the environment map.
Matrix GetFloorTransform(NEnvironmentNode const& environment) {
  Matrix transform, height;
  if (auto const model = environment.GetEnvironmentMapModel()) {
    model->GetTransform().GetScale(transform);
  }
  height.SetTranslate(VX_Math::Vec3(0.0f, static_cast<float>(environment.GetFloorHeight()), 0.0f));
  transform *= height;
  return transform;
}

}  // namespace

std::optional<float> NFloorPass::Draw(NSurfacePrograms& programs, NInstances& instances,
                                      NEnvironmentNode const& environment, NMeshes& meshes,
                                      NTextures& textures) {
  auto const geometry = environment.GetFloorGeometry();
  if (!environment.FloorIsVisible() || !geometry) return std::nullopt;
  Matrix const global = GetFloorTransform(environment);
  if (!std::isfinite(global(0, 0) + global(1, 1) + global(2, 2) + global(3, 1))) {
    return std::nullopt;
  }
  NMaterialParameters const material = ReadFloorMaterialParameters(environment, textures);
  programs.Use(material, false);
  instances.Upload(std::vector{NSurfaceInstance(global, global.Inverse().Transpose())});
  if (material.isTransparent) glEnable(GL_BLEND);
  glEnable(GL_STENCIL_TEST);
  glStencilFunc(GL_ALWAYS, kFloorStencilBit, kFloorStencilBit);
  glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
  instances.Draw(meshes.Get(NDrawItem(), GetGeometry(*geometry), material.mappings), 0, 1);
  glDisable(GL_STENCIL_TEST);
  glDisable(GL_BLEND);
  return global(3, 1);
}

NFloorPass::Geometry const& NFloorPass::GetGeometry(Geometry const& geometry) {
  std::vector<std::uint64_t> surfaces;
  for (auto const& surface : geometry.GetSurfaces()) {
    surfaces.push_back(surface->GetCreationNumber());
  }
  if (!m_geometry || m_surfaces != surfaces) {
    m_geometry = MakeFloorGeometry(geometry);
    m_surfaces = std::move(surfaces);
  }
  return *m_geometry;
}

}  // namespace corvanta::renderer
