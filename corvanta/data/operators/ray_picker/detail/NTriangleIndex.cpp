#include "corvanta/data/operators/ray_picker/detail/NTriangleIndex.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "corvanta/data/operators/ray_picker/detail/triangle_test.h"
#include "corvanta/data/structs/convert.h"

namespace corvanta::data::operators::ray_picker::detail {

namespace {

using VX_Math::Vec3;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr unsigned kBins = 16;
constexpr std::size_t kLane = 4;           // triangles in a packet
constexpr std::size_t kLargestGroup = 32;  // triangles that are split one by one
constexpr unsigned kHeuristicLevels = 48;  // below that ranges are halved, which bounds the depth
constexpr float kMargin = 0.01f;           // of a triangle's size
constexpr double kGrowthBeforeRebuild = 1.5;

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
std::uint32_t SpreadBits(std::uint32_t bits) noexcept {
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
  Builder(domain::geometry::NSurface const& surface, NTriangleIndex& index)
      : m_surface(surface), m_index(index) {}

  void Build() {
    m_keys = SortTriangles();
    MakeRuns();
    if (m_runs.empty()) return;
    m_index.m_packets.reserve(m_keys.size() / kLane + m_keys.size() / 16 + 1);
    m_index.m_nodes.reserve(m_keys.size() / 8 + 1);
    m_index.m_nodes.emplace_back();
    std::vector<Range> work{{0, m_runs.size(), m_keys.size(), 0, 0}};
    while (!work.empty()) {
      Range const range = work.back();
      work.pop_back();
      if (range.triangles <= kLargestGroup) {
        BuildGroup(range);
      } else {
        MakeNode(m_runs, range, work);
      }
    }
  }

  /// Gives the triangles of a packet their coordinates.
  /// Fails: false for one that is outside.
  bool Refill(Packet& packet) const noexcept {
    for (unsigned lane = 0; lane != kLane; ++lane) {
      std::size_t const triangle = packet.triangles[lane];
      if (triangle == kNone) continue;
      for (std::size_t corner = 0; corner != 3; ++corner) {
        if (!IsInside(Corner(triangle, corner))) return false;
      }
      Fill(packet, lane, triangle);
    }
    return true;
  }

  /// Gives a node the boxes of its children, which have theirs already.
  void Refit(Node& node) const noexcept {
    for (unsigned lane = 0; lane != node.childCount; ++lane) {
      std::uint32_t const child = node.children[lane];
      Box box;
      if (child & kLeaf) {
        for (std::uint32_t const triangle : m_index.m_packets[child & ~kLeaf].triangles) {
          if (triangle != kNone) box.Extend(GetGrownBox(triangle));
        }
      } else {
        Node const& below = m_index.m_nodes[child];
        for (unsigned i = 0; i != below.childCount; ++i) box.Extend(GetBox(below, i));
      }
      for (int axis = 0; axis != 3; ++axis) {
        node.min[axis][lane] = box.min[axis];
        node.max[axis][lane] = box.max[axis];
        m_index.m_extent =
            std::max({m_index.m_extent, std::abs(box.min[axis]), std::abs(box.max[axis])});
      }
    }
  }

  static Box GetBox(Node const& node, unsigned lane) noexcept {
    return {Float4{node.min[0][lane], node.min[1][lane], node.min[2][lane], 0},
            Float4{node.max[0][lane], node.max[1][lane], node.max[2][lane], 0}};
  }

 private:
  /// A few triangles that follow each other along the curve and lie close together, on their way
  /// into the hierarchy.
  struct Run {
    Box box;
    std::uint32_t first;  // of the keys
    std::uint32_t count;
  };
  using Runs = std::vector<Run>;
  struct Range {
    std::size_t begin, end;  // of the runs
    std::size_t triangles;
    std::uint32_t node;
    unsigned level;
  };

  Vec3 Corner(std::size_t triangle, std::size_t corner) const {
    return structs::ToVec3(m_surface.GetCoords()[m_surface.GetIndices()[3 * triangle + corner]]);
  }

  void Fill(Packet& packet, unsigned lane, std::size_t triangle) const {
    packet.triangles[lane] = static_cast<std::uint32_t>(triangle);
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

  /// Triangles that can't or needn't be indexed go aside; the others are sorted along a curve.
  std::vector<Key> SortTriangles() {
    std::vector<Key> keys;
    std::vector<Vec3> centers;
    keys.reserve(m_surface.GetIndices().size() / 3);
    centers.reserve(keys.capacity());
    Box bounds;
    unsigned outside = 0;
    bool const isSmall = m_surface.GetIndices().size() / 3 < kFewestTriangles;
    for (std::size_t i = 0; 3 * i + 2 < m_surface.GetIndices().size(); ++i) {
      if (!IsTriangle(m_surface, 3 * i)) continue;
      ++m_index.m_triangleCount;
      Vec3 const a = Corner(i, 0), b = Corner(i, 1), c = Corner(i, 2);
      if (!isSmall && IsInside(a) && IsInside(b) && IsInside(c)) {
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
        code |= SpreadBits(static_cast<std::uint32_t>(std::min(place, 1023.0f))) << axis;
      }
      keys[i].code = code;
    }
    Sort(keys);
    return keys;
  }

  void MakeRuns() {
    m_runs.reserve(m_keys.size() / 3 + 1);
    float areas = 0;
    for (std::size_t i = 0; i != m_keys.size(); ++i) {
      Box const box = GetGrownBox(m_keys[i].triangle);
      float const area = box.GetHalfArea();
      areas += area;
      if (!m_runs.empty() && m_runs.back().count != kLane) {
        Box joined = m_runs.back().box;
        joined.Extend(box);
        // Where the curve jumps, a run would span the gap.
        if (joined.GetHalfArea() <= 4 * areas) {
          m_runs.back().box = joined;
          ++m_runs.back().count;
          continue;
        }
      }
      m_runs.push_back({box, static_cast<std::uint32_t>(i), 1});
      areas = area;
    }
    for (Run const& run : m_runs) {
      for (int axis = 0; axis != 3; ++axis) {
        m_index.m_extent =
            std::max({m_index.m_extent, std::abs(run.box.min[axis]), std::abs(run.box.max[axis])});
      }
    }
  }

  /// Splits the triangles of a few runs one by one, which mends what the curve did to them.
  void BuildGroup(Range const& group) {
    m_group.clear();
    for (std::size_t i = group.begin; i != group.end; ++i) {
      for (std::uint32_t key = m_runs[i].first; key != m_runs[i].first + m_runs[i].count; ++key) {
        m_group.push_back({GetGrownBox(m_keys[key].triangle), key, 1});
      }
    }
    m_groupWork = {{0, m_group.size(), m_group.size(), group.node, group.level}};
    while (!m_groupWork.empty()) {
      Range const range = m_groupWork.back();
      m_groupWork.pop_back();
      MakeNode(m_group, range, m_groupWork);
    }
  }

  /// Splits a range into up to four, the one with the largest surface first, and enters them.
  void MakeNode(Runs& runs, Range const& range, std::vector<Range>& work) {
    std::array<Range, 4> parts{range};
    std::array<Box, 4> boxes{Measure(runs, parts[0])};
    unsigned count = 1;
    while (count != 4) {
      unsigned largest = 4;
      for (unsigned i = 0; i != count; ++i) {
        if (parts[i].triangles <= kLane) continue;
        if (largest == 4 || boxes[i].GetHalfArea() > boxes[largest].GetHalfArea()) largest = i;
      }
      if (largest == 4) break;
      Range& split = parts[largest];
      std::size_t const middle = &runs == &m_group ? SplitGroup(split) : Split(split);
      parts[count] = {middle, split.end, 0, 0, split.level + 1};
      split = {split.begin, middle, 0, 0, split.level + 1};
      boxes[largest] = Measure(runs, split);
      boxes[count] = Measure(runs, parts[count]);
      ++count;
    }
    for (unsigned i = 0; i != count; ++i) {
      parts[i].node = Enter(range.node, i, boxes[i], GetLeaf(runs, parts[i]));
      if (parts[i].node != 0) work.push_back(parts[i]);
    }
    m_index.m_nodes[range.node].childCount = count;
  }

  /// The packet of a range that is a leaf, as a child of a node; 0 for others.
  std::uint32_t GetLeaf(Runs const& runs, Range const& range) {
    if (range.triangles > kLane) return 0;
    Packet& packet = m_index.m_packets.emplace_back();
    unsigned lane = 0;
    for (std::size_t i = range.begin; i != range.end; ++i) {
      for (std::uint32_t key = runs[i].first; key != runs[i].first + runs[i].count; ++key) {
        Fill(packet, lane++, m_keys[key].triangle);
      }
    }
    return kLeaf | static_cast<std::uint32_t>(m_index.m_packets.size() - 1);
  }

  /// Gives a node a child: a leaf, or with 0 a new node, whose number it returns; 0 for a leaf.
  std::uint32_t Enter(std::uint32_t parent, unsigned lane, Box const& box, std::uint32_t leaf) {
    std::uint32_t const made = static_cast<std::uint32_t>(m_index.m_nodes.size());
    if (leaf == 0) m_index.m_nodes.emplace_back();
    Node& node = m_index.m_nodes[parent];
    node.children[lane] = leaf == 0 ? made : leaf;
    for (int axis = 0; axis != 3; ++axis) {
      node.min[axis][lane] = box.min[axis];
      node.max[axis][lane] = box.max[axis];
    }
    return leaf == 0 ? made : 0;
  }

  /// The box of a range, and how many triangles it holds.
  static Box Measure(Runs const& runs, Range& range) {
    Box box;
    range.triangles = 0;
    for (std::size_t i = range.begin; i != range.end; ++i) {
      box.Extend(runs[i].box);
      range.triangles += runs[i].count;
    }
    return box;
  }

  /// The axis along which the middles of the runs, doubled, spread most, and where they do.
  static unsigned FindLongestAxis(Runs const& runs, Range const& range, Box& centers) {
    for (std::size_t i = range.begin; i != range.end; ++i) {
      Float4 const center = runs[i].box.min + runs[i].box.max;
      centers.min = Min(centers.min, center);
      centers.max = Max(centers.max, center);
    }
    Float4 const size = centers.max - centers.min;
    return size[0] >= size[1] && size[0] >= size[2] ? 0 : size[1] >= size[2] ? 1 : 2;
  }

  /// Where the triangles of a group are best cut in two so that packets are full; they are sorted
  /// along the longest axis.
  std::size_t SplitGroup(Range const& range) {
    Box centers;
    unsigned const axis = FindLongestAxis(m_group, range, centers);
    auto const at = [this](std::size_t i) {
      return m_group.begin() + static_cast<std::ptrdiff_t>(i);
    };
    std::sort(at(range.begin), at(range.end), [axis](Run const& a, Run const& b) {
      return a.box.min[axis] + a.box.max[axis] < b.box.min[axis] + b.box.max[axis];
    });
    std::size_t const cuts = (range.end - range.begin - 1) / kLane;
    std::array<float, kLargestGroup / kLane> right{};
    Box side;
    std::size_t i = range.end;
    for (std::size_t cut = cuts; cut != 0; --cut) {
      while (i != range.begin + cut * kLane) side.Extend(m_group[--i].box);
      right[cut] = side.GetHalfArea() * static_cast<float>(range.end - i);
    }
    side = Box();
    std::size_t best = 0;
    float least = kInfinity;
    for (std::size_t cut = 1; cut <= cuts; ++cut) {
      while (i != range.begin + cut * kLane) side.Extend(m_group[i++].box);
      float const cost = side.GetHalfArea() * static_cast<float>(i - range.begin) + right[cut];
      if (best == 0 || cost < least) {
        least = cost;
        best = cut;
      }
    }
    return range.begin + best * kLane;
  }

  /// Where the range is best cut in two, by the surfaces of both sides times what they hold; the
  /// runs are brought to their sides.
  std::size_t Split(Range const& range) {
    std::size_t const half = range.begin + (range.end - range.begin) / 2;
    Box centers;
    unsigned const axis = FindLongestAxis(m_runs, range, centers);
    float const size = centers.max[axis] - centers.min[axis];
    if (range.level >= kHeuristicLevels || !(size > 0)) return half;
    float const scale = kBins * 0.9999f / size;
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
      counts[bin] += m_runs[i].count;
    }
    unsigned const best = FindBestCut(boxes, counts);
    if (best == 0) return half;
    auto const begin = m_runs.begin() + static_cast<std::ptrdiff_t>(range.begin);
    auto const end = m_runs.begin() + static_cast<std::ptrdiff_t>(range.end);
    auto const middle =
        std::partition(begin, end, [&](Run const& run) { return binOf(run) < best; });
    return static_cast<std::size_t>(middle - m_runs.begin());
  }

  /// The first bin of the right side; 0 where no cut divides anything.
  static unsigned FindBestCut(std::array<Box, kBins> const& boxes,
                              std::array<std::size_t, kBins> const& counts) {
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
    return best;
  }

  domain::geometry::NSurface const& m_surface;
  NTriangleIndex& m_index;
  std::vector<Key> m_keys;
  Runs m_runs;
  Runs m_group;  // runs of one triangle
  std::vector<Range> m_groupWork;
};

NTriangleIndex::NTriangleIndex(domain::geometry::NSurface const& surface) {
  Builder(surface, *this).Build();
  // Growing may have doubled the room.
  m_nodes.shrink_to_fit();
  m_packets.shrink_to_fit();
}

bool NTriangleIndex::Refit(domain::geometry::NSurface const& surface) noexcept {
  if (!m_outside.empty()) return false;
  // Before the first time the area is that of the boxes as they were built.
  if (m_builtArea < 0) m_builtArea = GetArea();
  Builder builder(surface, *this);
  for (Packet& packet : m_packets) {
    if (!builder.Refill(packet)) return false;
  }
  m_extent = 0;
  // Children come after their parents.
  for (std::size_t i = m_nodes.size(); i-- != 0;) builder.Refit(m_nodes[i]);
  return GetArea() <= kGrowthBeforeRebuild * m_builtArea;
}

double NTriangleIndex::GetArea() const noexcept {
  double area = 0;
  for (Node const& node : m_nodes) {
    for (unsigned lane = 0; lane != node.childCount; ++lane) {
      area += static_cast<double>(Builder::GetBox(node, lane).GetHalfArea());
    }
  }
  return area;
}

std::size_t NTriangleIndex::GetBytes() const noexcept {
  return m_nodes.capacity() * sizeof(Node) +
         (m_packets.capacity() + m_outside.capacity()) * sizeof(Packet);
}

bool NTriangleIndex::CanServe(Vec3 const& origin, Vec3 const& direction) noexcept {
  float const longest =
      std::max({std::abs(direction.x), std::abs(direction.y), std::abs(direction.z)});
  bool const isNumber =
      direction.x == direction.x && direction.y == direction.y && direction.z == direction.z;
  // Within these lengths no quotient of a distance and a direction leaves the range of a float.
  return IsInside(origin) && isNumber && longest >= 1e-15f && longest <= 1e15f;
}

}  // namespace corvanta::data::operators::ray_picker::detail
