#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstdint>
#include <optional>
#include <vector>

#include "corvanta/renderer/pass/NInstances.h"
#include "corvanta/renderer/pass/NSurfacePrograms.h"

namespace corvanta::renderer {

/// Draws the floor of an environment. Where the floor is seen, kFloorStencilBit of the stencil is
/// set, which NShadowPass relies on.
class NFloorPass {
 public:
  /// Makes the floor anew the next time; for a change of a surface.
  void ForgetGeometry() { m_geometry = nullptr; }

  /// The height of the floor that was drawn; none where there is none, or its place isn't finite.
  std::optional<float> Draw(NSurfacePrograms& programs, NInstances& instances,
                            data::domain::environment::NEnvironmentNode const& environment,
                            NMeshes& meshes, NTextures& textures);

 private:
  using Geometry = data::domain::geometry::NGeometryNode;

  Geometry const& GetGeometry(Geometry const& geometry);

  boost::intrusive_ptr<Geometry> m_geometry;
  std::vector<std::uint64_t> m_surfaces;  // that it was made from
};

}  // namespace corvanta::renderer
