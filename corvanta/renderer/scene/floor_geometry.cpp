#include "corvanta/renderer/scene/floor_geometry.h"

#include <vector>

#include "corvanta/data/domain/geometry/NPolygonSurface.h"
#include "corvanta/data/operators/projector/NPlaneProjector.h"

namespace corvanta::renderer {

namespace {

using data::domain::geometry::NGeometryNode;
using data::domain::geometry::NSurface;
using data::structs::UVW;

// Floors reach from -1 to 1.
constexpr float kRepeats = 5.0f;

void AddPlaneCoords(NSurface& surface) {
  data::domain::operators::projector::NPlaneProjector const projector;
  std::vector<float> coords, normals;
  std::vector<UVW> uvws;
  for (std::size_t i = 0; i != surface.GetCoords().size(); ++i) {
    auto const& position = surface.GetCoords()[i];
    auto const& normal = surface.GetNormals()[i];
    coords.insert(coords.end(), {position.x, position.y, position.z});
    normals.insert(normals.end(), {normal.x, normal.y, normal.z});
    UVW& uvw = uvws.emplace_back();
    projector.ProjectPoint(position.x * kRepeats, position.y, position.z * kRepeats, uvw.u, uvw.v,
                           uvw.w);
  }
  surface.Assign(coords, normals, surface.GetIndices(),
                 {{data::domain::material::texture_mapping::NUVWID_FLAT, uvws}});
}

}  // namespace

boost::intrusive_ptr<NGeometryNode> MakeFloorGeometry(NGeometryNode const& geometry) {
  boost::intrusive_ptr<NGeometryNode> floor(
      new NGeometryNode(core::node::NNodeID(), nullptr, nullptr));
  geometry.CopyTo(*floor);
  for (auto const& surface : floor->GetSurfaces()) {
    if (surface->GetUVWsMap().empty()) AddPlaneCoords(*surface);
  }
  return floor;
}

}  // namespace corvanta::renderer
