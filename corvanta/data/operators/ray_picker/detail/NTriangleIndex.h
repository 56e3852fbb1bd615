#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/operators/ray_picker/detail/triangle_test.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/Vec3.h"
#include "corvanta/vx_math/detail/float4.h"

namespace corvanta::data::operators::ray_picker::detail {

using VX_Math::detail::Float4;
using VX_Math::detail::GetMask;
using VX_Math::detail::Int4;
using VX_Math::detail::Max;
using VX_Math::detail::Min;
using VX_Math::detail::Spread;

/// Spares a ray the triangles of a surface that it can't meet: a bounding volume hierarchy.
///
/// What it finds is what the loop over all triangles finds, bit for bit, wherever the loop's hit
/// point lies in the triangle's box grown by a hundredth of its size and by the point's rounding.
/// Triangles that aren't finite or lie beyond kFarthest are tested for every ray. Source: binned
/// surface area heuristic as by Wald, On fast Construction of SAH-based Bounding Volume
/// Hierarchies, 2007, over short runs of triangles along a Morton curve, and at last over the
/// triangles of a few runs one by one.
class CORVANTA_API NTriangleIndex {
 public:
  static constexpr float kFarthest = 1e9f;
  static constexpr std::size_t kFewestTriangles = 256;

  explicit NTriangleIndex(domain::geometry::NSurface const& surface);

  /// Whether a ray lies within the bounds that the index can serve.
  static bool CanServe(VX_Math::Vec3 const& origin, VX_Math::Vec3 const& direction) noexcept;

  /// The least t, of either sign, at which the line origin + direction * t meets a triangle and for
  /// which `accept(t)` holds.
  /// Requires: CanServe.
  /// Fails: the largest double where there is none.
  template <class Accept>
  double FindLeast(VX_Math::Vec3 const& origin, VX_Math::Vec3 const& direction,
                   Accept const& accept) const {
    Search<Accept> search(*this, origin, direction, accept);
    return search.Run();
  }

  /// Takes over other coordinates of the surface, whose indices are those that it was built of.
  /// Fails: false where building anew pays: for triangles that aren't finite or lie beyond
  /// kFarthest, before or now, and for boxes that have grown too much. It is of no use then.
  /// Cost: about a quarter of building.
  bool Refit(domain::geometry::NSurface const& surface) noexcept;

  /// What it takes of the memory.
  std::size_t GetBytes() const noexcept;
  std::size_t GetTriangleCount() const noexcept { return m_triangleCount; }

 private:
  /// Four triangles, a lane each; a lane without one has edges of length 0, which nothing meets.
  static constexpr std::uint32_t kNone = ~0u;
  struct Packet {
    Float4 a[3];
    Float4 e1[3];
    Float4 e2[3];
    std::uint32_t triangles[4] = {kNone, kNone, kNone, kNone};
  };
  /// Four boxes and what they hold: a node, or with kLeaf a packet.
  struct alignas(64) Node {
    Float4 min[3];
    Float4 max[3];
    std::uint32_t children[4];
    std::uint32_t childCount;
  };
  class Builder;

  double GetArea() const noexcept;

  static constexpr std::uint32_t kLeaf = 1u << 31;

  template <class Accept>
  class Search;

  std::vector<Node> m_nodes;  // the root is the first
  std::vector<Packet> m_packets;
  std::vector<Packet> m_outside;  // tested for every ray
  std::size_t m_triangleCount = 0;
  float m_extent = 0;       // the largest coordinate in any node
  double m_builtArea = -1;  // half areas of all nodes' boxes, once Refit has summed them up
};

}  // namespace corvanta::data::operators::ray_picker::detail

#include "corvanta/data/operators/ray_picker/detail/triangle_search.inc"
