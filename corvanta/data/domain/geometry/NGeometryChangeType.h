#pragma once

namespace corvanta::data::domain::geometry {

/// What happened to the surfaces of a geometry node.
enum NGeometryChangeType : int {
  NGCT_SURFACE_ADDED = 0,
  NGCT_SURFACE_REMOVED = 1,
  NGCT_SURFACE_CHANGED = 2,  // its arrays were assigned
};

}  // namespace corvanta::data::domain::geometry
