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
  bool const isOurs = m_index && m_surface == surface.GetCreationNumber();
  if (isOurs && !m_isStale) return m_index.get();
  std::size_t const count = surface.GetIndices().size() / 3;
  if (m_testCount < (isOurs ? kTestsBeforeRefit : kTestsATriangle) * count) {
    m_testCount += count;
    return nullptr;
  }
  auto const start = std::chrono::steady_clock::now();
  if (!isOurs || !m_index->Refit(surface)) {
    m_index.reset();
    m_index = std::make_unique<NTriangleIndex>(surface);
  }
  m_surface = surface.GetCreationNumber();
  m_isStale = false;
  m_buildSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return m_index.get();
}

bool NPickIndex::OnCoordsChange(domain::geometry::NSurface const& surface) noexcept {
  if (m_index && m_surface != surface.GetCreationNumber()) return true;
  m_isStale = m_index != nullptr;
  m_testCount = 0;
  return true;
}

}  // namespace corvanta::data::operators::ray_picker::detail
