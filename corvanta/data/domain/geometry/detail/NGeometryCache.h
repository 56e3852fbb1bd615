#pragma once

#include <memory>

#include "corvanta/export.h"

namespace corvanta::data::domain::geometry {
class NGeometryNode;
class NSurface;
}  // namespace corvanta::data::domain::geometry

namespace corvanta::data::domain::geometry::detail {

/// What somebody has worked out from the surfaces of a geometry node, such as the pickers' index.
/// The node keeps it for all who show the node, and lets it go when a surface comes or goes, or
/// changes in more than its coordinates.
class CORVANTA_API NGeometryCache {
 public:
  NGeometryCache() = default;
  NGeometryCache(NGeometryCache const&) = delete;
  NGeometryCache& operator=(NGeometryCache const&) = delete;
  virtual ~NGeometryCache();

  /// `surface` has got other arrays, with as many coordinates and the same indices as before.
  /// Whether this goes on.
  virtual bool OnCoordsChange(NSurface const& surface) noexcept = 0;

  /// Where `geometry` keeps it; null until somebody sets one.
  static std::unique_ptr<NGeometryCache>& Of(NGeometryNode const& geometry) noexcept;
};

}  // namespace corvanta::data::domain::geometry::detail
