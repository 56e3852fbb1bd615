#include "app/scene/totals.h"

#include <cstdint>

#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"

namespace corvanta::app {

namespace {

using data::domain::geometry::NGeometryNode;
using data::domain::scenegraph::item::NSceneGraphModelNode;

std::size_t CountTriangles(NGeometryNode const& geometry) {
  std::size_t count = 0;
  for (auto const& surface : geometry.GetSurfaces()) count += surface->GetIndices().size() / 3;
  return count;
}

/// Calls `visit` with those of the domain's nodes that are in `nodes`, and counts them.
template <class Domain, class Visit>
std::size_t VisitThose(Domain& domain, NNodeSet const& nodes, Visit const& visit) {
  std::size_t count = 0;
  for (auto at = domain.GetNodeBegin(); at != domain.GetNodeEnd(); ++at) {
    if (!nodes.Has(*at)) continue;
    ++count;
    visit(*at);
  }
  return count;
}

}  // namespace

NNodeSet::NNodeSet(data::document::NDocument const& document) {
  for (auto const& domain : document.GetDomains()) {
    for (auto at = domain->GetNodeBegin(); at != domain->GetNodeEnd(); ++at) m_nodes.insert(&*at);
  }
}

std::size_t NNodeSet::CountOthers(core::domain::NDomainBase const& domain) const {
  std::size_t count = 0;
  for (auto at = domain.GetNodeBegin(); at != domain.GetNodeEnd(); ++at) count += !Has(*at);
  return count;
}

NRecord CountTotals(data::document::NDocument const& document, NNodeSet const& nodes) {
  std::size_t models = 0, surfaces = 0, triangles = 0, shown = 0, vertices = 0, missing = 0;
  std::uint64_t bytes = 0;
  auto const ignore = [](core::node::NNode const&) {};
  std::size_t const items =
      VisitThose(document.GetItems(), nodes, [&](core::node::NNode const& node) {
        auto const* const model = dynamic_cast<NSceneGraphModelNode const*>(&node);
        if (model == nullptr) return;
        ++models;
        if (auto const geometry = model->GetGeometryNode()) shown += CountTriangles(*geometry);
      });
  std::size_t const meshes =
      VisitThose(document.GetGeometries(), nodes, [&](core::node::NNode const& node) {
        auto const& geometry = dynamic_cast<NGeometryNode const&>(node);
        surfaces += geometry.GetSurfaces().size();
        triangles += CountTriangles(geometry);
        for (auto const& surface : geometry.GetSurfaces()) vertices += surface->GetCoords().size();
      });
  std::size_t const pictures =
      VisitThose(document.GetImages(), nodes, [&](core::node::NNode const& node) {
        auto const size =
            GetPictureBytes(dynamic_cast<data::domain::image::NImageNode const&>(node));
        bytes += size.value_or(0);
        missing += !size;
      });
  return {{"items", items},
          {"models", models},
          {"meshes", meshes},
          {"surfaces", surfaces},
          {"triangles", triangles},
          {"trianglesShown", shown},
          {"vertices", vertices},
          {"materials", VisitThose(document.GetMaterials(), nodes, ignore)},
          {"textures", VisitThose(document.GetTextures(), nodes, ignore)},
          {"pictures", pictures},
          {"pictureBytes", bytes},
          {"picturesMissing", missing},
          {"lights", VisitThose(document.GetLights(), nodes, ignore)},
          {"cameras", VisitThose(document.GetCameras(), nodes, ignore)},
          {"animations", VisitThose(document.GetAnimations(), nodes, ignore)}};
}

}  // namespace corvanta::app
