#include "corvanta/data/domain/geometry/detail/NPickIndex.h"

#include <chrono>

namespace corvanta::data::domain::geometry::detail {

NTriangleIndex const* NPickIndex::Use(NSurface const& surface) {
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

}  // namespace corvanta::data::domain::geometry::detail
