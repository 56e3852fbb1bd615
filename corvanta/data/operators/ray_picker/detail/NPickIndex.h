#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/geometry/detail/NGeometryCache.h"
#include "corvanta/data/operators/ray_picker/detail/NTriangleIndex.h"

namespace corvanta::data::operators::ray_picker::detail {

/// The index of a geometry node for picks, built when it pays.
class CORVANTA_API NPickIndex : public domain::geometry::detail::NGeometryCache {
 public:
  /// That of `geometry`, for its first surface with triangles; made at the first call since its
  /// surfaces changed. All models of the node share it.
  static NPickIndex& Of(domain::geometry::NGeometryNode const& geometry);
  /// Fails: null where nobody has asked for it since.
  static NPickIndex const* Query(domain::geometry::NGeometryNode const& geometry) noexcept;

  /// The index is built once picks have tested this many times the surface's triangles.
  static constexpr std::size_t kTestsATriangle = 8;
  /// One whose surface has got other coordinates is brought up to date after as many.
  static constexpr std::size_t kTestsBeforeRefit = 2;

  /// The index of `surface`, of which a pick is about to test all triangles.
  /// Fails: null while it doesn't pay.
  NTriangleIndex const* Use(domain::geometry::NSurface const& surface);
  /// Fails: null while none was built, and while it is out of date.
  NTriangleIndex const* GetIndex() const noexcept { return m_isStale ? nullptr : m_index.get(); }
  /// What building the index took; 0 without one.
  /// Units: seconds.
  double GetBuildSeconds() const noexcept { return m_buildSeconds; }

  bool OnCoordsChange(domain::geometry::NSurface const& surface) noexcept override;

 private:
  std::unique_ptr<NTriangleIndex> m_index;
  std::uint64_t m_surface = 0;  // the creation number of the surface that is indexed
  bool m_isStale = false;       // its coordinates have changed since
  double m_buildSeconds = 0;
  std::size_t m_testCount = 0;  // triangles tested by picks since the last change
};

}  // namespace corvanta::data::operators::ray_picker::detail
