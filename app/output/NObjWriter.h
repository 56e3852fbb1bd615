#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "app/scene/map_surface.h"
#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::app {

/// Writes surfaces with texture coordinates as one Wavefront OBJ file, in global coordinates.
class NObjWriter {
 public:
  explicit NObjWriter(std::ostream& out) : m_out(out) {}
  NObjWriter(NObjWriter const&) = delete;
  NObjWriter& operator=(NObjWriter const&) = delete;

  /// Numbers that aren't finite are written as 0; triangles with an index outside the vertices are
  /// left out.
  void Add(std::string const& name, data::domain::geometry::NSurface const& surface,
           NMappedCoords const& mapped, VX_Math::Matrix const& global);

 private:
  void WriteLine(char const* keyword, float const* numbers, int count);
  void WriteTriangles(std::vector<unsigned int> const& indices, std::size_t vertexCount,
                      bool isMirrored);

  std::ostream& m_out;
  std::string m_line;
  std::size_t m_written = 0;  // vertices; the file counts them from 1
};

}  // namespace corvanta::app
