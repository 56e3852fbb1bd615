#include "corvanta/renderer/floor.h"

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

void Lay(NSurface& surface) {
  data::domain::operators::projector::NPlaneProjector const projector;
  std::vector<float> coords, normals;
  std::vector<UVW> uvws;
  for (std::size_t i = 0; i != surface.GetCoords().size(); ++i) {
    auto const& place = surface.GetCoords()[i];
    auto const& normal = surface.GetNormals()[i];
    coords.insert(coords.end(), {place.x, place.y, place.z});
    normals.insert(normals.end(), {normal.x, normal.y, normal.z});
    UVW& uvw = uvws.emplace_back();
    projector.ProjectPoint(place.x * kRepeats, place.y, place.z * kRepeats, uvw.u, uvw.v, uvw.w);
  }
  surface.Assign(coords, normals, surface.GetIndices(),
                 {{data::domain::material::texture_mapping::NUVWID_FLAT, uvws}});
}

}  // namespace

boost::intrusive_ptr<NGeometryNode> LayFloor(NGeometryNode const& geometry) {
  boost::intrusive_ptr<NGeometryNode> laid(
      new NGeometryNode(core::node::NNodeID(), nullptr, nullptr));
  geometry.CopyTo(*laid);
  for (auto const& surface : laid->GetSurfaces()) {
    if (surface->GetUVWsMap().empty()) Lay(*surface);
  }
  return laid;
}

}  // namespace corvanta::renderer
