#pragma once

#include <cstddef>
#include <memory>

#include "corvanta/data/domain/geometry/detail/NTriangleIndex.h"

namespace corvanta::data::domain::geometry::detail {

/// The index of a geometry node for picks, built when it pays.
class CORVANTA_API NPickIndex {
 public:
  /// The index is built once picks have tested this many times the surface's triangles.
  static constexpr std::size_t kTestsATriangle = 8;

  /// The index of `surface`, of which a pick is about to test all triangles.
  /// Fails: null while it doesn't pay.
  NTriangleIndex const* Use(NSurface const& surface);
  /// What building the present index took; 0 without one.
  /// Units: seconds.
  double GetBuildSeconds() const noexcept { return m_index ? m_buildSeconds : 0; }
  /// Forgets the index and the tests counted; for a change of the node's surfaces.
  void Drop() noexcept {
    m_index.reset();
    m_testCount = 0;
  }

 private:
  std::unique_ptr<NTriangleIndex const> m_index;
  double m_buildSeconds = 0;
  std::size_t m_testCount = 0;  // triangles tested by picks since the last change
};

}  // namespace corvanta::data::domain::geometry::detail
