#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstdint>
#include <optional>
#include <vector>

#include "corvanta/renderer/pass/NPicture.h"

namespace corvanta::renderer {

/// Draws the floor of an environment with the program of opaque or of transparent surfaces. Where
/// the floor is seen, kFloorStencilBit of the stencil is set, which NShadowPass relies on.
class NFloorPass {
 public:
  /// Requires: the programs outlive this.
  NFloorPass(NSurfaceProgram const& opaque, NSurfaceProgram const& transparent)
      : m_opaque(opaque), m_transparent(transparent) {}

  /// Makes the floor anew the next time; for a change of a surface.
  void ForgetGeometry() { m_geometry = nullptr; }

  /// The height of the floor that was drawn; none where there is none, or its place isn't finite.
  std::optional<float> Draw(NPicture const& picture,
                            data::domain::environment::NEnvironmentNode const& environment,
                            NMeshes& meshes, NTextures& textures);

 private:
  using Geometry = data::domain::geometry::NGeometryNode;

  Geometry const& GetGeometry(Geometry const& geometry);

  NSurfaceProgram const& m_opaque;
  NSurfaceProgram const& m_transparent;
  boost::intrusive_ptr<Geometry> m_geometry;
  std::vector<std::uint64_t> m_surfaces;  // that it was made from
};

}  // namespace corvanta::renderer
