#include "corvanta/importer/normals.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <numeric>
#include <tuple>

#include "corvanta/importer/numbering.h"

namespace corvanta::importer {

namespace {

using neutral::NTriple;

// How far normals may be from that of their face: cosines of 75 and, where they are one, 45
// degrees.
constexpr double kNearby = 0.2588;
constexpr double kNearbyAlike = 0.7071;

struct Sum {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  double Length() const { return std::hypot(x, y, z); }
  double Dot(Sum const& v) const { return x * v.x + y * v.y + z * v.z; }
  void operator+=(Sum const& v) { x += v.x, y += v.y, z += v.z; }
  friend Sum operator-(Sum const& a, Sum const& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
};

Sum Cross(Sum const& a, Sum const& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
Sum Wide(NTriple const& v) { return {v[0], v[1], v[2]}; }
NTriple Unit(Sum const& v, double length) {
  double const scale = 1.0 / length;
  return {static_cast<float>(v.x * scale), static_cast<float>(v.y * scale),
          static_cast<float>(v.z * scale)};
}
NTriple UnitOrUp(Sum const& v) {
  double const length = v.Length();
  return length > 0.0 ? Unit(v, length) : NTriple{0.0f, 0.0f, 1.0f};
}

// Twice the triangle's area, along its normal.
Sum GetArea(NCornerNormals::Triples positions, neutral::NTriangle const& t) {
  Sum const a = Wide(positions[t[0]]);
  return Cross(Wide(positions[t[1]]) - a, Wide(positions[t[2]]) - a);
}

// Corners that share a normal, as a forest.
class Groups {
 public:
  explicit Groups(std::size_t count) : m_parents(count) {
    std::iota(m_parents.begin(), m_parents.end(), 0u);
  }

  std::uint32_t Find(std::uint32_t corner) {
    while (m_parents[corner] != corner) {
      m_parents[corner] = m_parents[m_parents[corner]];
      corner = m_parents[corner];
    }
    return corner;
  }
  // The least corner stands for all.
  void Join(std::uint32_t a, std::uint32_t b) {
    a = Find(a);
    b = Find(b);
    m_parents[std::max(a, b)] = std::min(a, b);
  }

 private:
  std::vector<std::uint32_t> m_parents;
};

// A side of a triangle between two places, the lower one first.
struct Edge {
  std::uint32_t low, high;
  std::uint32_t lowCorner, highCorner;

  bool operator<(Edge const& b) const {
    return std::tie(low, high, lowCorner) < std::tie(b.low, b.high, b.lowCorner);
  }
};

std::vector<Edge> GetEdges(NCornerNormals::Triples positions, NCornerNormals::Triangles triangles) {
  std::vector<std::uint32_t> places(positions.size());
  std::vector<std::uint32_t> firsts;
  NNumbering numbering(positions.size());
  for (std::uint32_t i = 0; i != positions.size(); ++i) {
    auto const [number, isNew] = numbering.Take(Mix(0, positions[i]), [&](std::uint32_t known) {
      return positions[firsts[known]] == positions[i];
    });
    if (isNew) firsts.push_back(i);
    places[i] = number;
  }
  std::vector<Edge> edges;
  edges.reserve(3 * triangles.size());
  for (std::uint32_t i = 0; i != triangles.size(); ++i) {
    for (std::uint32_t k = 0; k != 3; ++k) {
      std::uint32_t const next = (k + 1) % 3;
      Edge edge{places[triangles[i][k]], places[triangles[i][next]], 3 * i + k, 3 * i + next};
      if (edge.low > edge.high) {
        std::swap(edge.low, edge.high);
        std::swap(edge.lowCorner, edge.highCorner);
      }
      edges.push_back(edge);
    }
  }
  std::sort(edges.begin(), edges.end());
  return edges;
}

}  // namespace

NCornerNormals::NCornerNormals(Triples positions, Triples normals, Triangles triangles,
                               double crease)
    : m_positions(positions), m_triangles(triangles) {
  ReadOwn(normals);
  if (!m_own.empty()) JudgeFaces();
  if (!AreAllOwn()) Make(crease);
}

std::size_t NCornerNormals::GetMostDistinct() const {
  return m_made.empty() ? m_positions.size() : m_made.size();
}

void NCornerNormals::ReadOwn(Triples normals) {
  constexpr double kRounding = 1e-5;
  m_own.assign(normals.begin(), normals.end());
  for (NTriple& normal : m_own) {
    double const length = Wide(normal).Length();
    if (!(std::isfinite(length) && length >= std::numeric_limits<float>::min())) {
      normal = kNone;
    } else if (std::abs(length - 1.0) > kRounding) {
      normal = Unit(Wide(normal), length);
    }
  }
}

void NCornerNormals::JudgeFaces() {
  m_isContradicted.resize(m_triangles.size());
  std::vector<std::size_t> turned;  // faces whose normals all lie on their other side
  for (std::size_t i = 0; i != m_triangles.size(); ++i) {
    auto const& t = m_triangles[i];
    std::array const own{m_own[t[0]], m_own[t[1]], m_own[t[2]]};
    Sum const area = GetArea(m_positions, t);
    double const length = area.Length();
    if (!(length > 0.0) || std::find(own.begin(), own.end(), kNone) != own.end()) continue;
    std::array<double, 3> cosines;
    std::transform(own.begin(), own.end(), cosines.begin(),
                   [&](NTriple const& normal) { return Wide(normal).Dot(area) / length; });
    double const least = own[0] == own[1] && own[0] == own[2] ? kNearbyAlike : kNearby;
    m_isContradicted[i] = std::all_of(cosines.begin(), cosines.end(),
                                      [=](double cosine) { return std::abs(cosine) < least; });
    if (*std::max_element(cosines.begin(), cosines.end()) < 0.0) turned.push_back(i);
  }
  // Files whose triangles run the other way round have good normals nevertheless.
  if (2 * turned.size() > m_triangles.size()) return;
  for (std::size_t const i : turned) m_isContradicted[i] = true;
}

bool NCornerNormals::AreAllOwn() const {
  for (std::size_t corner = 0; corner != 3 * m_triangles.size(); ++corner) {
    if (!IsOwn(corner)) return false;
  }
  return true;
}

void NCornerNormals::Make(double crease) {
  std::size_t const count = m_triangles.size();
  std::vector<Sum> areas(count);
  std::transform(m_triangles.begin(), m_triangles.end(), areas.begin(),
                 [this](auto const& triangle) { return GetArea(m_positions, triangle); });
  m_made.resize(3 * count);
  if (crease <= 0.0) {
    for (std::size_t i = 0; i != count; ++i) {
      std::fill_n(m_made.begin() + static_cast<std::ptrdiff_t>(3 * i), 3, UnitOrUp(areas[i]));
    }
    return;
  }

  Groups groups(3 * count);
  double const least = std::cos(std::min(crease, 180.0) * std::numbers::pi / 180.0) - 1e-6;
  auto const edges = GetEdges(m_positions, m_triangles);
  for (std::size_t i = 1; i < edges.size(); ++i) {
    Edge const &a = edges[i - 1], &b = edges[i];
    if (a.low != b.low || a.high != b.high) continue;
    Sum const &first = areas[a.lowCorner / 3], &second = areas[b.lowCorner / 3];
    double const lengths = first.Length() * second.Length();
    if (!(lengths > 0.0) || first.Dot(second) < least * lengths) continue;
    groups.Join(a.lowCorner, b.lowCorner);
    groups.Join(a.highCorner, b.highCorner);
  }

  // The first corner of a group comes before all others of it.
  std::vector<std::uint32_t> numbers(3 * count);
  std::vector<Sum> sums;
  for (std::uint32_t corner = 0; corner != 3 * count; ++corner) {
    std::uint32_t const first = groups.Find(corner);
    if (first == corner) {
      numbers[corner] = static_cast<std::uint32_t>(sums.size());
      sums.emplace_back();
    }
    numbers[corner] = numbers[first];
    sums[numbers[corner]] += areas[corner / 3];
  }
  for (std::size_t corner = 0; corner != 3 * count; ++corner) {
    m_made[corner] = UnitOrUp(sums[numbers[corner]]);
  }
}

}  // namespace corvanta::importer
