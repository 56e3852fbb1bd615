#include "corvanta/data/domain/scenegraph/detail/NBoxHierarchy.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvanta::data::domain::scenegraph::detail {

// A node holds the exact boxes of its four children, so that the union over any of its levels is
// the union of all leaves below, bit for bit: the least and the greatest of floats don't depend on
// the order, but for the signs of zeros, which are the caller's to mind. The lanes of a node that
// hold nothing have the box that contains nothing.

using VX_Math::Box3;
using VX_Math::detail::Max;
using VX_Math::detail::Min;
using VX_Math::detail::Spread;

namespace {

constexpr float kLargest = std::numeric_limits<float>::max();
constexpr float kTame = 1e15f;  // areas of such boxes stay within the range of a float
constexpr unsigned kBins = 16;
constexpr unsigned kHeuristicLevels = 48;  // below that ranges are halved, which bounds the depth
constexpr float kGrowth = 4;               // of a node's area before a leaf is put in anew

/// 0 for a box that contains nothing, and what isn't finite counts for nothing.
template <class Bounds>
float GetHalfArea(Bounds const& b) noexcept {
  if (!(b.min[0] <= b.max[0])) return 0;
  VX_Math::detail::Float4 const size = b.max - b.min;
  float const area = size[0] * size[1] + size[1] * size[2] + size[2] * size[0];
  return area <= kLargest ? area : 0;
}

template <class Entry>
bool IsTame(Entry const& entry) noexcept {
  for (int axis = 0; axis != 3; ++axis) {
    if (!(entry.min[axis] >= -kTame && entry.max[axis] <= kTame)) return false;
  }
  return entry.reach <= kLargest;
}

}  // namespace

void NBoxHierarchy::Set(Node& node, unsigned lane, Bounds const& bounds) noexcept {
  for (int axis = 0; axis != 3; ++axis) {
    node.sides[0][axis][lane] = bounds.min[axis];
    node.sides[1][axis][lane] = bounds.max[axis];
  }
  node.reach[lane] = bounds.reach;
}

NBoxHierarchy::Bounds NBoxHierarchy::GetLane(Node const& node, unsigned lane) noexcept {
  return {Float4{node.sides[0][0][lane], node.sides[0][1][lane], node.sides[0][2][lane], 0},
          Float4{node.sides[1][0][lane], node.sides[1][1][lane], node.sides[1][2][lane], 0},
          node.reach[lane]};
}

NBoxHierarchy::Bounds NBoxHierarchy::Unite(Node const& node) noexcept {
  auto const least = [](Float4 const& v) {
    float const a = v[0] < v[1] ? v[0] : v[1], b = v[2] < v[3] ? v[2] : v[3];
    return a < b ? a : b;
  };
  auto const greatest = [](Float4 const& v) {
    float const a = v[0] > v[1] ? v[0] : v[1], b = v[2] > v[3] ? v[2] : v[3];
    return a > b ? a : b;
  };
  return {
      Float4{least(node.sides[0][0]), least(node.sides[0][1]), least(node.sides[0][2]), 0},
      Float4{greatest(node.sides[1][0]), greatest(node.sides[1][1]), greatest(node.sides[1][2]), 0},
      greatest(node.reach)};
}

/// `place` is where the node will be; the root's is kNone.
std::uint32_t NBoxHierarchy::AddNode(std::uint32_t place) {
  auto const made = static_cast<std::uint32_t>(m_nodes.size());
  if (m_parents.size() == m_parents.capacity()) m_parents.reserve(2 * m_parents.size() + 4);
  Node& node = m_nodes.emplace_back();
  for (int axis = 0; axis != 3; ++axis) {
    node.sides[0][axis] = Spread(kLargest);
    node.sides[1][axis] = Spread(-kLargest);
  }
  node.reach = Spread(0);
  std::fill(std::begin(node.children), std::end(node.children), kNone);
  m_parents.push_back(place);
  return made;
}

/// Brings the boxes above a node up to date.
void NBoxHierarchy::Climb(std::uint32_t node) noexcept {
  for (std::uint32_t place = m_parents[node]; place != kNone; place = m_parents[place / 4]) {
    Node& parent = m_nodes[place / 4];
    Bounds const made = Unite(m_nodes[parent.children[place % 4]]);
    Bounds const old = GetLane(parent, place % 4);
    unsigned const same = VX_Math::detail::GetMask((made.min == old.min) & (made.max == old.max));
    if (same == 0xF && made.reach == old.reach) return;
    m_cost += static_cast<double>(GetHalfArea(made)) - static_cast<double>(GetHalfArea(old));
    Set(parent, place % 4, made);
  }
}

struct NBoxHierarchy::Range {
  std::size_t begin, end;
  std::uint32_t node;
  unsigned level;
};

class NBoxHierarchy::Builder {
 public:
  Builder(std::vector<Entry>& entries, NBoxHierarchy& hierarchy)
      : m_entries(entries), m_hierarchy(hierarchy) {}

  void Build() {
    std::uint32_t leafCount = 0;
    for (Entry const& entry : m_entries) leafCount = std::max(leafCount, entry.leaf + 1);
    m_hierarchy.m_places.resize(leafCount, kNone);
    m_hierarchy.m_nodes.reserve(m_entries.size() / 2 + 1);
    m_hierarchy.m_parents.reserve(m_entries.size() / 2 + 1);
    m_hierarchy.AddNode(kNone);
    // What every ray meets, or nearly so, would spoil the boxes of its neighbours.
    auto const wild = std::partition(m_entries.begin(), m_entries.end(), IsTame<Entry>);
    auto const tameCount = static_cast<std::size_t>(wild - m_entries.begin());
    std::vector<Range> work;
    std::array<Range, 4> parts{Range{0, tameCount, 0, 0}};
    unsigned count = 1;
    if (tameCount != m_entries.size()) parts[count++] = {tameCount, m_entries.size(), 0, 0};
    MakeNode({0, m_entries.size(), 0, 0}, parts, count, work);
    while (!work.empty()) {
      Range const range = work.back();
      work.pop_back();
      parts[0] = range;
      MakeNode(range, parts, 1, work);
    }
  }

 private:
  /// Splits the parts of a range until there are four, the largest first, and enters them.
  void MakeNode(Range const& range, std::array<Range, 4>& parts, unsigned count,
                std::vector<Range>& work) {
    std::array<Bounds, 4> bounds;
    for (unsigned i = 0; i != count; ++i) bounds[i] = Measure(parts[i]);
    while (count != 4) {
      unsigned largest = 4;
      for (unsigned i = 0; i != count; ++i) {
        if (parts[i].end - parts[i].begin < 2) continue;
        if (largest == 4 || GetHalfArea(bounds[i]) > GetHalfArea(bounds[largest])) largest = i;
      }
      if (largest == 4) break;
      Range& split = parts[largest];
      std::size_t const middle = Split(split);
      parts[count] = {middle, split.end, 0, split.level + 1};
      split = {split.begin, middle, 0, split.level + 1};
      bounds[largest] = Measure(split);
      bounds[count] = Measure(parts[count]);
      ++count;
    }
    for (unsigned i = 0; i != count; ++i) {
      if (parts[i].begin != parts[i].end) Enter(range.node, i, parts[i], bounds[i], work);
    }
  }

  void Enter(std::uint32_t parent, unsigned lane, Range part, Bounds const& bounds,
             std::vector<Range>& work) {
    std::uint32_t const place = 4 * parent + lane;
    std::uint32_t child;
    if (part.end - part.begin == 1) {
      std::uint32_t const leaf = m_entries[part.begin].leaf;
      m_hierarchy.m_places[leaf] = place;
      child = kLeaf | leaf;
    } else {
      part.node = child = m_hierarchy.AddNode(place);
      work.push_back(part);
      m_hierarchy.m_cost += static_cast<double>(GetHalfArea(bounds));
    }
    m_hierarchy.m_nodes[parent].children[lane] = child;
    Set(m_hierarchy.m_nodes[parent], lane, bounds);
  }

  Bounds Measure(Range const& range) const {
    Bounds bounds{Spread(kLargest), Spread(-kLargest), 0};
    for (std::size_t i = range.begin; i != range.end; ++i) {
      bounds.min = Min(m_entries[i].min, bounds.min);
      bounds.max = Max(m_entries[i].max, bounds.max);
      bounds.reach = std::max(bounds.reach, m_entries[i].reach);
    }
    return bounds;
  }

  /// Where the range is best cut in two, by the surfaces of both sides times what they hold; the
  /// entries are brought to their sides.
  std::size_t Split(Range const& range) {
    std::size_t const half = range.begin + (range.end - range.begin) / 2;
    Bounds centers{Spread(kLargest), Spread(-kLargest), 0};
    for (std::size_t i = range.begin; i != range.end; ++i) {
      Float4 const center = m_entries[i].min + m_entries[i].max;
      centers.min = Min(center, centers.min);
      centers.max = Max(center, centers.max);
    }
    Float4 const size = centers.max - centers.min;
    int const axis = size[0] >= size[1] && size[0] >= size[2] ? 0 : size[1] >= size[2] ? 1 : 2;
    float const scale = kBins * 0.9999f / size[axis];
    if (range.level >= kHeuristicLevels || !(size[axis] > 0 && scale > 0)) return half;
    float const start = centers.min[axis];
    auto const binOf = [axis, scale, start](Entry const& entry) {
      float const place = (entry.min[axis] + entry.max[axis] - start) * scale;
      return place > 0 ? static_cast<unsigned>(std::min<float>(place, kBins - 1)) : 0;
    };
    std::array<Bounds, kBins> boxes;
    boxes.fill({Spread(kLargest), Spread(-kLargest), 0});
    std::array<std::size_t, kBins> counts{};
    for (std::size_t i = range.begin; i != range.end; ++i) {
      unsigned const bin = binOf(m_entries[i]);
      boxes[bin].min = Min(m_entries[i].min, boxes[bin].min);
      boxes[bin].max = Max(m_entries[i].max, boxes[bin].max);
      ++counts[bin];
    }
    unsigned const best = FindBestCut(boxes, counts);
    if (best == 0) return half;
    auto const begin = m_entries.begin() + static_cast<std::ptrdiff_t>(range.begin);
    auto const end = m_entries.begin() + static_cast<std::ptrdiff_t>(range.end);
    auto const middle =
        std::partition(begin, end, [&](Entry const& entry) { return binOf(entry) < best; });
    return static_cast<std::size_t>(middle - m_entries.begin());
  }

  /// The first bin of the right side; 0 where no cut divides anything.
  static unsigned FindBestCut(std::array<Bounds, kBins> const& boxes,
                              std::array<std::size_t, kBins> const& counts) {
    std::array<float, kBins> right;
    std::array<std::size_t, kBins> held{};
    Bounds side{Spread(kLargest), Spread(-kLargest), 0};
    std::size_t count = 0;
    for (unsigned bin = kBins - 1; bin != 0; --bin) {
      side.min = Min(boxes[bin].min, side.min);
      side.max = Max(boxes[bin].max, side.max);
      held[bin] = count += counts[bin];
      right[bin] = GetHalfArea(side) * static_cast<float>(count);
    }
    side = {Spread(kLargest), Spread(-kLargest), 0};
    count = 0;
    unsigned best = 0;
    float least = std::numeric_limits<float>::infinity();
    for (unsigned bin = 1; bin != kBins; ++bin) {
      side.min = Min(boxes[bin - 1].min, side.min);
      side.max = Max(boxes[bin - 1].max, side.max);
      count += counts[bin - 1];
      if (count == 0 || held[bin] == 0) continue;
      float const cost = GetHalfArea(side) * static_cast<float>(count) + right[bin];
      if (cost < least) {
        least = cost;
        best = bin;
      }
    }
    return best;
  }

  std::vector<Entry>& m_entries;
  NBoxHierarchy& m_hierarchy;
};

void NBoxHierarchy::Build(std::vector<Entry>& entries) {
  *this = NBoxHierarchy();
  if (entries.empty()) return;
  NBoxHierarchy made;
  Builder(entries, made).Build();
  made.m_count = entries.size();
  made.m_builtCost = made.m_cost;
  *this = std::move(made);
}

void NBoxHierarchy::Insert(Entry const& entry) {
  if (m_places.size() <= entry.leaf) m_places.resize(entry.leaf + 1, kNone);
  if (m_nodes.empty()) AddNode(kNone);
  Bounds const bounds{entry.min, entry.max, entry.reach};
  std::uint32_t at = 0;
  unsigned lane = 0;
  for (unsigned level = 0;; ++level) {
    Node const& node = m_nodes[at];
    unsigned empty = 4;
    float least = std::numeric_limits<float>::infinity();
    lane = 4;
    // Equal boxes are spread evenly.
    unsigned const digit = (entry.leaf * 0x9E3779B1u >> (2 * level % 30)) & 3;
    for (unsigned i = 0; i != 4; ++i) {
      if (node.children[i] == kNone) {
        empty = i;
        continue;
      }
      Bounds grown = GetLane(node, i);
      float const before = GetHalfArea(grown);
      grown.min = Min(grown.min, bounds.min);
      grown.max = Max(grown.max, bounds.max);
      float const growth = GetHalfArea(grown) - before;
      if (lane != 4 && !(growth < least) && !(growth == least && i == digit)) continue;
      least = growth;
      lane = i;
    }
    bool const isLeaf = lane == 4 || (node.children[lane] & kLeaf) != 0;
    if (isLeaf && empty != 4) {
      lane = empty;
      break;
    }
    if (isLeaf) {
      // The leaf there and the new one go one level down.
      std::uint32_t const below = AddNode(4 * at + lane);
      Node& parent = m_nodes[at];
      Node& made = m_nodes[below];
      std::uint32_t const other = std::exchange(parent.children[lane], below);
      made.children[0] = other;
      Set(made, 0, GetLane(parent, lane));
      m_places[other & ~kLeaf] = 4 * below;
      m_cost += static_cast<double>(GetHalfArea(GetLane(parent, lane)));
      m_isDeep = m_isDeep || level >= kDeepest;
      at = below;
      lane = 1;
      break;
    }
    at = node.children[lane];
  }
  Set(m_nodes[at], lane, bounds);
  m_nodes[at].children[lane] = kLeaf | entry.leaf;
  m_places[entry.leaf] = 4 * at + lane;
  ++m_count;
  ++m_editCount;
  Climb(at);
}

void NBoxHierarchy::Move(Entry const& entry) {
  std::uint32_t const place = m_places[entry.leaf];
  Node& node = m_nodes[place / 4];
  Set(node, place % 4, {entry.min, entry.max, entry.reach});
  ++m_editCount;
  if (place >= 4) {
    std::uint32_t const above = m_parents[place / 4];
    float const before = GetHalfArea(GetLane(m_nodes[above / 4], above % 4));
    if (GetHalfArea(Unite(node)) > kGrowth * before) {
      Remove(entry.leaf);
      Insert(entry);
      return;
    }
  }
  Climb(place / 4);
}

void NBoxHierarchy::Remove(std::uint32_t leaf) noexcept {
  std::uint32_t const place = std::exchange(m_places[leaf], kNone);
  Node& node = m_nodes[place / 4];
  Set(node, place % 4, {Spread(kLargest), Spread(-kLargest), 0});
  node.children[place % 4] = kNone;
  --m_count;
  ++m_editCount;
  Climb(place / 4);
}

Box3 NBoxHierarchy::GetBox() const noexcept {
  if (m_nodes.empty()) return {};
  Bounds const all = Unite(m_nodes.front());
  return {{all.min[0], all.min[1], all.min[2]}, {all.max[0], all.max[1], all.max[2]}};
}

void NBoxHierarchy::AppendEntries(std::vector<Entry>& entries) const {
  for (Node const& node : m_nodes) {
    for (unsigned lane = 0; lane != 4; ++lane) {
      std::uint32_t const child = node.children[lane];
      if (child == kNone || (child & kLeaf) == 0) continue;
      Bounds const bounds = GetLane(node, lane);
      entries.push_back({bounds.min, bounds.max, bounds.reach, child & ~kLeaf});
    }
  }
}

bool NBoxHierarchy::IsDegraded() const noexcept {
  if (m_isDeep) return true;
  return m_editCount > 64 + m_count / 2 &&
         (m_cost > 1.5 * m_builtCost || m_nodes.size() > 64 + m_count);
}

}  // namespace corvanta::data::domain::scenegraph::detail
