#pragma once

#include <memory>

#include "corvanta/export.h"

namespace corvanta::data::domain::geometry {
class NGeometryNode;
}

namespace corvanta::data::domain::geometry::detail {

/// What somebody has worked out from the surfaces of a geometry node, such as the pickers' index.
/// The node keeps it for all who show the node, and lets it go when a surface comes, goes or
/// changes.
class CORVANTA_API NGeometryCache {
 public:
  NGeometryCache() = default;
  NGeometryCache(NGeometryCache const&) = delete;
  NGeometryCache& operator=(NGeometryCache const&) = delete;
  virtual ~NGeometryCache();

  /// Where `geometry` keeps it; null until somebody sets one.
  static std::unique_ptr<NGeometryCache>& Of(NGeometryNode const& geometry) noexcept;
};

}  // namespace corvanta::data::domain::geometry::detail
