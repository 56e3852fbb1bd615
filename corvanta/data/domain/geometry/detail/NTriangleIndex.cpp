#include "corvanta/data/domain/geometry/detail/NTriangleIndex.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "corvanta/data/domain/geometry/detail/triangle_test.h"

namespace corvanta::data::domain::geometry::detail {

namespace {

using VX_Math::Vec3;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr unsigned kBins = 16;
constexpr std::size_t kLargestLeaf = 2;    // packets
constexpr unsigned kHeuristicLevels = 48;  // below that ranges are halved, which bounds the depth
constexpr float kMargin = 0.01f;           // of a triangle's size

Float4 Min(Float4 a, Float4 b) noexcept { return a < b ? a : b; }
Float4 Max(Float4 a, Float4 b) noexcept { return a > b ? a : b; }

/// A box in the first three lanes. In the last, whatever is left there.
struct Box {
  Float4 min{kInfinity, kInfinity, kInfinity, kInfinity};
  Float4 max{-kInfinity, -kInfinity, -kInfinity, -kInfinity};

  void Extend(Box const& other) noexcept {
    min = Min(min, other.min);
    max = Max(max, other.max);
  }
  void Extend(Vec3 const& point) noexcept {
    Float4 const p{point.x, point.y, point.z, 0};
    min = Min(min, p);
    max = Max(max, p);
  }
  float GetHalfArea() const noexcept {
    Float4 const size = max - min;
    return size[0] * size[1] + size[1] * size[2] + size[2] * size[0];
  }
};

/// Spreads the low ten bits out to every third.
std::uint32_t Spread(std::uint32_t bits) noexcept {
  bits = (bits | (bits << 16)) & 0x030000FF;
  bits = (bits | (bits << 8)) & 0x0300F00F;
  bits = (bits | (bits << 4)) & 0x030C30C3;
  return (bits | (bits << 2)) & 0x09249249;
}

struct Key {
  std::uint32_t code;
  std::uint32_t triangle;
};

/// Sorts by the thirty bits of the codes; equal codes keep their order.
void Sort(std::vector<Key>& keys) {
  constexpr unsigned kBits = 10;
  std::vector<Key> sorted(keys.size());
  for (unsigned shift = 0; shift != 30; shift += kBits) {
    std::array<std::uint32_t, (1u << kBits) + 1> starts{};
    for (Key const& key : keys) ++starts[((key.code >> shift) & ((1u << kBits) - 1)) + 1];
    for (std::size_t i = 1; i != starts.size(); ++i) starts[i] += starts[i - 1];
    for (Key const& key : keys) sorted[starts[(key.code >> shift) & ((1u << kBits) - 1)]++] = key;
    keys.swap(sorted);
  }
}

bool IsInside(Vec3 const& point) noexcept {
  constexpr float kFarthest = NTriangleIndex::kFarthest;
  return std::abs(point.x) <= kFarthest && std::abs(point.y) <= kFarthest &&
         std::abs(point.z) <= kFarthest;
}

}  // namespace

class NTriangleIndex::Builder {
 public:
  Builder(NSurface const& surface, NTriangleIndex& index) : m_surface(surface), m_index(index) {}

  void Build() {
    m_keys = SortTriangles();
    MakeRuns();
    if (m_runs.empty()) return;
    m_index.m_packets.reserve(m_runs.size());
    m_index.m_nodes.reserve(m_runs.size() / 2 + 1);
    m_index.m_nodes.emplace_back();
    m_work.push_back({0, m_runs.size(), 0, 0});
    while (!m_work.empty()) {
      Range const range = m_work.back();
      m_work.pop_back();
      MakeNode(range);
    }
  }

 private:
  /// Four triangles that follow each other along the curve, a packet on its way into the hierarchy.
  struct Run {
    Box box;
    std::uint32_t first;  // of the keys
  };
  struct Range {
    std::size_t begin, end;
    std::uint32_t node;
    unsigned level;
  };

  Vec3 Corner(std::size_t triangle, std::size_t corner) const {
    return ToVec3(m_surface.GetCoords()[m_surface.GetIndices()[3 * triangle + corner]]);
  }

  void Fill(Packet& packet, unsigned lane, std::size_t triangle) const {
    Vec3 const a = Corner(triangle, 0);
    Vec3 const e1 = Corner(triangle, 1) - a;
    Vec3 const e2 = Corner(triangle, 2) - a;
    for (int axis = 0; axis != 3; ++axis) {
      packet.a[axis][lane] = a[axis];
      packet.e1[axis][lane] = e1[axis];
      packet.e2[axis][lane] = e2[axis];
    }
  }

  Box GetGrownBox(std::size_t triangle) const {
    Box box;
    for (std::size_t corner = 0; corner != 3; ++corner) box.Extend(Corner(triangle, corner));
    Float4 const margin = (box.max - box.min) * kMargin;
    box.min -= margin;
    box.max += margin;
    return box;
  }

  /// Triangles that can't be indexed go aside; the others are sorted along a curve through space.
  std::vector<Key> SortTriangles() {
    std::vector<Key> keys;
    std::vector<Vec3> centers;
    keys.reserve(m_surface.GetIndices().size() / 3);
    centers.reserve(keys.capacity());
    Box bounds;
    unsigned outside = 0;
    for (std::size_t i = 0; 3 * i + 2 < m_surface.GetIndices().size(); ++i) {
      if (!IsTriangle(m_surface, 3 * i)) continue;
      ++m_index.m_triangleCount;
      Vec3 const a = Corner(i, 0), b = Corner(i, 1), c = Corner(i, 2);
      if (IsInside(a) && IsInside(b) && IsInside(c)) {
        centers.push_back((a + b + c) * (1.0f / 3));
        bounds.Extend(centers.back());
        keys.push_back({0, static_cast<std::uint32_t>(i)});
      } else {
        if (outside % 4 == 0) m_index.m_outside.emplace_back();
        Fill(m_index.m_outside.back(), outside++ % 4, i);
      }
    }
    Float4 const size = bounds.max - bounds.min;
    float const longest = std::max({size[0], size[1], size[2], 1e-30f});
    float const scale = 1023.0f / longest;
    for (std::size_t i = 0; i != keys.size(); ++i) {
      std::uint32_t code = 0;
      for (int axis = 0; axis != 3; ++axis) {
        float const place = (centers[i][axis] - bounds.min[axis]) * scale;
        code |= Spread(static_cast<std::uint32_t>(std::min(place, 1023.0f))) << axis;
      }
      keys[i].code = code;
    }
    Sort(keys);
    return keys;
  }

  void MakeRuns() {
    m_runs.resize((m_keys.size() + 3) / 4);
    for (std::size_t i = 0; i != m_keys.size(); ++i) {
      Run& run = m_runs[i / 4];
      if (i % 4 == 0) run.first = static_cast<std::uint32_t>(i);
      run.box.Extend(GetGrownBox(m_keys[i].triangle));
    }
    for (Run const& run : m_runs) {
      for (int axis = 0; axis != 3; ++axis) {
        m_index.m_extent =
            std::max({m_index.m_extent, std::abs(run.box.min[axis]), std::abs(run.box.max[axis])});
      }
    }
  }

  /// Splits a range into up to four, the one with the largest surface first, and enters them.
  void MakeNode(Range const& range) {
    std::array<Range, 4> parts{range};
    std::array<Box, 4> boxes{GetBox(range)};
    unsigned count = 1;
    while (count != 4) {
      unsigned largest = 4;
      for (unsigned i = 0; i != count; ++i) {
        if (parts[i].end - parts[i].begin <= kLargestLeaf) continue;
        if (largest == 4 || boxes[i].GetHalfArea() > boxes[largest].GetHalfArea()) largest = i;
      }
      if (largest == 4) break;
      Range& split = parts[largest];
      std::size_t const middle = Split(split);
      parts[count] = {middle, split.end, 0, split.level + 1};
      split = {split.begin, middle, 0, split.level + 1};
      boxes[largest] = GetBox(split);
      boxes[count] = GetBox(parts[count]);
      ++count;
    }
    for (unsigned i = 0; i != count; ++i) Enter(range.node, i, parts[i], boxes[i]);
    m_index.m_nodes[range.node].childCount = count;
  }

  void Enter(std::uint32_t parent, unsigned lane, Range const& part, Box const& box) {
    std::uint32_t child;
    if (part.end - part.begin <= kLargestLeaf) {
      child = kLeaf | static_cast<std::uint32_t>(m_index.m_packets.size()) << kCountBits |
              static_cast<std::uint32_t>(part.end - part.begin - 1);
      for (std::size_t i = part.begin; i != part.end; ++i) {
        Packet& packet = m_index.m_packets.emplace_back();
        std::size_t const first = m_runs[i].first;
        std::size_t const end = std::min(first + 4, m_keys.size());
        for (std::size_t key = first; key != end; ++key) {
          Fill(packet, static_cast<unsigned>(key - first), m_keys[key].triangle);
        }
      }
    } else {
      child = static_cast<std::uint32_t>(m_index.m_nodes.size());
      m_index.m_nodes.emplace_back();
      m_work.push_back({part.begin, part.end, child, part.level});
    }
    Node& node = m_index.m_nodes[parent];
    node.children[lane] = child;
    for (int axis = 0; axis != 3; ++axis) {
      node.min[axis][lane] = box.min[axis];
      node.max[axis][lane] = box.max[axis];
    }
  }

  Box GetBox(Range const& range) const {
    Box box;
    for (std::size_t i = range.begin; i != range.end; ++i) box.Extend(m_runs[i].box);
    return box;
  }

  /// Where the range is best cut in two, by the surfaces of both sides times what they hold; the
  /// runs are brought to their sides.
  std::size_t Split(Range const& range) {
    std::size_t const half = range.begin + (range.end - range.begin) / 2;
    Box centers;
    for (std::size_t i = range.begin; i != range.end; ++i) {
      Float4 const center = m_runs[i].box.min + m_runs[i].box.max;
      centers.min = Min(centers.min, center);
      centers.max = Max(centers.max, center);
    }
    Float4 const size = centers.max - centers.min;
    unsigned const axis = size[0] >= size[1] && size[0] >= size[2] ? 0 : size[1] >= size[2] ? 1 : 2;
    if (range.level >= kHeuristicLevels || !(size[axis] > 0)) return half;
    float const scale = kBins * 0.9999f / size[axis];
    float const start = centers.min[axis];
    auto const binOf = [axis, scale, start](Run const& run) {
      float const place = (run.box.min[axis] + run.box.max[axis] - start) * scale;
      return std::min(kBins - 1, static_cast<unsigned>(std::max(place, 0.0f)));
    };
    std::array<Box, kBins> boxes;
    std::array<std::size_t, kBins> counts{};
    for (std::size_t i = range.begin; i != range.end; ++i) {
      unsigned const bin = binOf(m_runs[i]);
      boxes[bin].Extend(m_runs[i].box);
      ++counts[bin];
    }
    std::array<float, kBins> right;
    Box side;
    std::size_t held = 0;
    for (unsigned bin = kBins - 1; bin != 0; --bin) {
      side.Extend(boxes[bin]);
      held += counts[bin];
      right[bin] = held == 0 ? kInfinity : side.GetHalfArea() * static_cast<float>(held);
    }
    side = Box();
    held = 0;
    unsigned best = 0;
    float least = kInfinity;
    for (unsigned bin = 1; bin != kBins; ++bin) {
      side.Extend(boxes[bin - 1]);
      held += counts[bin - 1];
      if (held == 0) continue;
      float const cost = side.GetHalfArea() * static_cast<float>(held) + right[bin];
      if (cost < least) {
        least = cost;
        best = bin;
      }
    }
    if (best == 0) return half;
    auto const begin = m_runs.begin() + static_cast<std::ptrdiff_t>(range.begin);
    auto const end = m_runs.begin() + static_cast<std::ptrdiff_t>(range.end);
    auto const middle =
        std::partition(begin, end, [&](Run const& run) { return binOf(run) < best; });
    return static_cast<std::size_t>(middle - m_runs.begin());
  }

  NSurface const& m_surface;
  NTriangleIndex& m_index;
  std::vector<Key> m_keys;
  std::vector<Run> m_runs;
  std::vector<Range> m_work;
};

NTriangleIndex::NTriangleIndex(NSurface const& surface) { Builder(surface, *this).Build(); }

bool NTriangleIndex::CanServe(Vec3 const& origin, Vec3 const& direction) noexcept {
  float const longest =
      std::max({std::abs(direction.x), std::abs(direction.y), std::abs(direction.z)});
  bool const isNumber =
      direction.x == direction.x && direction.y == direction.y && direction.z == direction.z;
  // Within these lengths no quotient of a distance and a direction leaves the range of a float.
  return IsInside(origin) && isNumber && longest >= 1e-15f && longest <= 1e15f;
}

}  // namespace corvanta::data::domain::geometry::detail
