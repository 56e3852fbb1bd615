#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <unordered_set>
#include <vector>

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/material/texture_mapping/map_surface.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::app {

/// Writes surfaces with texture coordinates as one Wavefront OBJ file, in global coordinates.
class NObjWriter {
 public:
  explicit NObjWriter(std::ostream& out) : m_out(out) {}
  NObjWriter(NObjWriter const&) = delete;
  NObjWriter& operator=(NObjWriter const&) = delete;

  /// Begins an object, to which the surfaces that follow belong. A reader takes a name up to its
  /// first blank, and what has the same name for the same object: blanks and what else such a file
  /// gives a meaning to become '_', and a name that was there already gets a number behind.
  void Begin(std::string const& name);
  /// Numbers that aren't finite are written as 0; triangles with an index outside the vertices are
  /// left out.
  void Add(data::domain::geometry::NSurface const& surface,
           data::domain::material::texture_mapping::NMappedCoords const& mapped,
           VX_Math::Matrix const& global);

 private:
  void WriteLine(char const* keyword, float const* numbers, int count);
  void WriteTriangles(std::vector<unsigned int> const& indices, std::size_t vertexCount,
                      bool isMirrored);

  std::ostream& m_out;
  std::unordered_set<std::string> m_names;
  std::string m_line;
  std::size_t m_written = 0;  // vertices; the file counts them from 1
};

}  // namespace corvanta::app
