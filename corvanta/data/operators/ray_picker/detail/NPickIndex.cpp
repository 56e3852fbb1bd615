#include "corvanta/data/operators/ray_picker/detail/NPickIndex.h"

#include <chrono>

namespace corvanta::data::operators::ray_picker::detail {

// Nobody else keeps anything with a geometry node.
NPickIndex& NPickIndex::Of(domain::geometry::NGeometryNode const& geometry) {
  auto& cache = NGeometryCache::Of(geometry);
  if (!cache) cache = std::make_unique<NPickIndex>();
  return static_cast<NPickIndex&>(*cache);
}

NPickIndex const* NPickIndex::Query(domain::geometry::NGeometryNode const& geometry) noexcept {
  return static_cast<NPickIndex const*>(NGeometryCache::Of(geometry).get());
}

NTriangleIndex const* NPickIndex::Use(domain::geometry::NSurface const& surface) {
  if (m_index) return m_index.get();
  std::size_t const count = surface.GetIndices().size() / 3;
  if (m_testCount < kTestsATriangle * count) {
    m_testCount += count;
    return nullptr;
  }
  auto const start = std::chrono::steady_clock::now();
  m_index = std::make_unique<NTriangleIndex const>(surface);
  m_buildSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return m_index.get();
}

}  // namespace corvanta::data::operators::ray_picker::detail
