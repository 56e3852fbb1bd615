#include "corvanta/renderer/scene/solid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <tuple>
#include <utility>

namespace corvanta::renderer {

namespace {

using data::structs::XYZ;
using Edge = std::pair<unsigned, unsigned>;

constexpr std::size_t kMostTriangles = 65536;

constexpr float kCloseness = 1e-6f;  // of the size of a mesh

/// Numbers for the values of one axis, equal for those that lie close to each other.
std::vector<unsigned> GetSteps(std::vector<XYZ> const& coords, unsigned axis) {
  std::vector<unsigned> order(coords.size()), steps(coords.size());
  std::iota(order.begin(), order.end(), 0u);
  std::sort(order.begin(), order.end(),
            [&coords, axis](unsigned a, unsigned b) { return coords[a][axis] < coords[b][axis]; });
  float const least = coords[order.front()][axis], most = coords[order.back()][axis];
  float const close = kCloseness * (most - least);
  unsigned step = 0;
  for (std::size_t i = 1; i != order.size(); ++i) {
    step += coords[order[i]][axis] - coords[order[i - 1]][axis] > close;
    steps[order[i]] = step;
  }
  return steps;
}

/// For each coordinate the first of those at its place.
std::vector<unsigned> GetPlaces(std::vector<XYZ> const& coords) {
  std::array<std::vector<unsigned>, 3> const steps{GetSteps(coords, 0), GetSteps(coords, 1),
                                                   GetSteps(coords, 2)};
  std::vector<unsigned> order(coords.size()), places(coords.size());
  std::iota(order.begin(), order.end(), 0u);
  auto const get = [&steps](unsigned i) { return std::tie(steps[0][i], steps[1][i], steps[2][i]); };
  std::sort(order.begin(), order.end(), [&get](unsigned a, unsigned b) { return get(a) < get(b); });
  for (std::size_t i = 0; i != order.size(); ++i) {
    bool const isSame = i != 0 && get(order[i - 1]) == get(order[i]);
    places[order[i]] = isSame ? places[order[i - 1]] : order[i];
  }
  return places;
}

/// Whether each edge belongs to two triangles, which run along it in opposite directions.
bool IsClosed(std::vector<unsigned> const& corners) {
  std::vector<Edge> edges;
  edges.reserve(corners.size());
  for (std::size_t i = 0; i != corners.size(); i += 3) {
    for (std::size_t side = 0; side != 3; ++side) {
      edges.emplace_back(corners[i + side], corners[i + (side + 1) % 3]);
    }
  }
  std::sort(edges.begin(), edges.end());
  if (std::adjacent_find(edges.begin(), edges.end()) != edges.end()) return false;
  return std::all_of(edges.begin(), edges.end(), [&edges](Edge const& edge) {
    return std::binary_search(edges.begin(), edges.end(), Edge(edge.second, edge.first));
  });
}

/// The sets of corners that triangles connect.
class Parts {
 public:
  explicit Parts(std::size_t count) : m_above(count) {
    std::iota(m_above.begin(), m_above.end(), 0u);
  }

  unsigned Find(unsigned corner) {
    while (m_above[corner] != corner) {
      m_above[corner] = m_above[m_above[corner]];
      corner = m_above[corner];
    }
    return corner;
  }
  void Join(unsigned a, unsigned b) { m_above[Find(a)] = Find(b); }

 private:
  std::vector<unsigned> m_above;
};

struct CornerSum {
  double x = 0, y = 0, z = 0;
  double count = 0;
};

/// Six times the volume between a triangle and a point.
double GetVolume(XYZ const& a, XYZ const& b, XYZ const& c, CornerSum const& point) {
  auto const from = [&point](XYZ const& v) {
    return std::array<double, 3>{double{v.x} - point.x, double{v.y} - point.y,
                                 double{v.z} - point.z};
  };
  auto const p = from(a), q = from(b), r = from(c);
  return p[0] * (q[1] * r[2] - q[2] * r[1]) + p[1] * (q[2] * r[0] - q[0] * r[2]) +
         p[2] * (q[0] * r[1] - q[1] * r[0]);
}

}  // namespace

bool IsSolid(std::vector<XYZ> const& coords, std::vector<unsigned> const& indices) {
  if (coords.empty() || indices.empty() || indices.size() > 3 * kMostTriangles) return false;
  bool const isFinite = std::all_of(coords.begin(), coords.end(), [](XYZ const& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
  });
  if (!isFinite) return false;
  std::vector<unsigned> const places = GetPlaces(coords);
  std::vector<unsigned> corners;
  corners.reserve(indices.size());
  Parts parts(coords.size());
  for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
    unsigned const a = places[indices[i]], b = places[indices[i + 1]], c = places[indices[i + 2]];
    // It covers nothing.
    if (a == b || b == c || c == a) continue;
    corners.insert(corners.end(), {a, b, c});
    parts.Join(a, b);
    parts.Join(b, c);
  }
  if (corners.empty() || !IsClosed(corners)) return false;
  std::vector<CornerSum> middles(coords.size());
  for (unsigned const corner : corners) {
    CornerSum& sum = middles[parts.Find(corner)];
    sum.x += double{coords[corner].x};
    sum.y += double{coords[corner].y};
    sum.z += double{coords[corner].z};
    ++sum.count;
  }
  for (CornerSum& sum : middles) {
    sum.x /= sum.count;
    sum.y /= sum.count;
    sum.z /= sum.count;
  }
  for (std::size_t i = 0; i != corners.size(); i += 3) {
    double const volume = GetVolume(coords[corners[i]], coords[corners[i + 1]],
                                    coords[corners[i + 2]], middles[parts.Find(corners[i])]);
    if (!(volume > 0)) return false;
  }
  return true;
}

}  // namespace corvanta::renderer
