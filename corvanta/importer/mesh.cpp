#include "corvanta/importer/mesh.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <span>
#include <unordered_map>
#include <vector>

namespace corvanta::importer {

namespace {

namespace geometry = data::domain::geometry;
using data::domain::material::texture_mapping::NUVWMappingID;
using neutral::NTriple;

std::size_t Mix(std::size_t hash, float value) {
  // Adding 0 makes one of the two zeros.
  return (hash ^ std::bit_cast<std::uint32_t>(value + 0.0f)) * 0x9E3779B97F4A7C15u;
}

std::size_t Mix(std::size_t hash, NTriple const& v) {
  hash = Mix(Mix(Mix(hash, v[0]), v[1]), v[2]);
  return hash ^ (hash >> 32);
}

using Normals = std::vector<NTriple>;

struct Sum {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  double Length() const { return std::hypot(x, y, z); }
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

// A mesh's arrays.
struct Arrays {
  Arrays(neutral::NSceneView const& scene, neutral::NMesh const& mesh)
      : positions(scene.Get(mesh.positions)),
        normals(scene.Get(mesh.normals)),
        triangles(scene.Get(mesh.triangles)) {
    for (std::size_t i = 0; i != mesh.uvSetCount; ++i) uvs.push_back(scene.Get(mesh.uvs[i]));
  }

  std::span<NTriple const> positions;
  std::span<NTriple const> normals;
  std::vector<std::span<NTriple const>> uvs;
  std::span<neutral::NTriangle const> triangles;
};

// The mesh's normals with length 1, (0, 0, 0) in place of those that point nowhere; none where none
// can be used.
Normals ReadNormals(Arrays const& mesh) {
  constexpr double kRounding = 1e-5;
  Normals normals(mesh.normals.begin(), mesh.normals.end());
  bool areUsed = false;
  for (NTriple& normal : normals) {
    double const length = Wide(normal).Length();
    bool const isUsed = std::isfinite(length) && length >= std::numeric_limits<float>::min();
    areUsed |= isUsed;
    if (!isUsed) {
      normal = {};
    } else if (std::abs(length - 1.0) > kRounding) {
      normal = Unit(Wide(normal), length);
    }
  }
  return areUsed ? normals : Normals();
}

// The triangles of a mesh over those of its vertices that are used, each kind once.
class Joiner {
 public:
  Joiner(Arrays const& mesh, Normals const& normals)
      : m_mesh(mesh),
        m_normals(normals),
        m_numbers(
            0, [this](unsigned i) { return Hash(i); },
            [this](unsigned a, unsigned b) { return Equal(a, b); }) {
    for (neutral::NTriangle const& triangle : mesh.triangles) {
      for (std::uint32_t const vertex : triangle) Take(vertex);
    }
  }

  // The mesh's number of each vertex that stays.
  std::vector<unsigned> const& GetVertices() const { return m_vertices; }
  std::vector<unsigned> const& GetIndices() const { return m_indices; }

 private:
  void Take(unsigned vertex) {
    auto const [found, isNew] =
        m_numbers.try_emplace(vertex, static_cast<unsigned>(m_vertices.size()));
    if (isNew) m_vertices.push_back(vertex);
    m_indices.push_back(found->second);
  }
  std::size_t Hash(unsigned i) const {
    std::size_t hash = Mix(0, m_mesh.positions[i]);
    for (auto const& uvs : m_mesh.uvs) hash = Mix(hash, uvs[i]);
    return m_normals.empty() ? hash : Mix(hash, m_normals[i]);
  }
  bool Equal(unsigned a, unsigned b) const {
    if (a == b) return true;
    for (auto const& uvs : m_mesh.uvs) {
      if (uvs[a] != uvs[b]) return false;
    }
    return m_mesh.positions[a] == m_mesh.positions[b] &&
           (m_normals.empty() || m_normals[a] == m_normals[b]);
  }

  Arrays const& m_mesh;
  Normals const& m_normals;
  std::unordered_map<unsigned, unsigned, std::function<std::size_t(unsigned)>,
                     std::function<bool(unsigned, unsigned)>>
      m_numbers;
  std::vector<unsigned> m_vertices;
  std::vector<unsigned> m_indices;
};

// At each vertex the mean of the triangles that meet in its place, weighted by their areas; (0, 0,
// 1) where they cancel out. Vertices that differ in texture coordinates alone share a normal.
Normals ComputeNormals(Arrays const& mesh, Joiner const& joined) {
  auto const hash = [](NTriple const& v) { return Mix(0, v); };
  std::unordered_map<NTriple, unsigned, decltype(hash)> places(0, hash);
  std::vector<unsigned> placeOf;
  for (unsigned const vertex : joined.GetVertices()) {
    auto const next = static_cast<unsigned>(places.size());
    placeOf.push_back(places.try_emplace(mesh.positions[vertex], next).first->second);
  }

  std::vector<Sum> sums(places.size());
  auto const& indices = joined.GetIndices();
  for (std::size_t i = 0; i != indices.size(); i += 3) {
    Sum const a = Wide(mesh.positions[joined.GetVertices()[indices[i]]]);
    Sum const b = Wide(mesh.positions[joined.GetVertices()[indices[i + 1]]]);
    Sum const c = Wide(mesh.positions[joined.GetVertices()[indices[i + 2]]]);
    Sum const area = Cross(b - a, c - a);
    for (std::size_t corner = i; corner != i + 3; ++corner) sums[placeOf[indices[corner]]] += area;
  }

  Normals normals;
  for (unsigned const place : placeOf) {
    Sum const& sum = sums[place];
    double const length = sum.Length();
    normals.push_back(length > 0.0 ? Unit(sum, length) : NTriple{0.0f, 0.0f, 1.0f});
  }
  return normals;
}

void Append(std::vector<float>& floats, NTriple const& v) {
  floats.insert(floats.end(), v.begin(), v.end());
}

}  // namespace

boost::intrusive_ptr<geometry::NSurface> CreateSurface(neutral::NSceneView const& scene,
                                                       neutral::NMesh const& source) {
  Arrays const mesh(scene, source);
  Normals const given = ReadNormals(mesh);
  Joiner const joined(mesh, given);
  if (joined.GetIndices().empty()) return nullptr;

  auto const& vertices = joined.GetVertices();
  bool const isComplete =
      !given.empty() && std::none_of(vertices.begin(), vertices.end(),
                                     [&](unsigned vertex) { return given[vertex] == NTriple(); });
  Normals const computed = isComplete ? Normals() : ComputeNormals(mesh, joined);
  std::vector<float> coords;
  std::vector<float> normals;
  for (std::size_t i = 0; i != vertices.size(); ++i) {
    Append(coords, mesh.positions[vertices[i]]);
    bool const isGiven = isComplete || (!given.empty() && given[vertices[i]] != NTriple());
    Append(normals, isGiven ? given[vertices[i]] : computed[i]);
  }

  std::map<NUVWMappingID, std::vector<data::structs::UVW>> uvws;
  for (unsigned set = 0; set != mesh.uvs.size(); ++set) {
    auto const id = mesh.uvs.size() == 1 ? data::domain::material::texture_mapping::NUVWID_FLAT
                                         : static_cast<NUVWMappingID>(GetMappingId(set));
    auto& uvw = uvws[id];
    for (unsigned const vertex : vertices) {
      NTriple const& v = mesh.uvs[set][vertex];
      uvw.push_back({v[0], v[1], v[2]});
    }
  }

  boost::intrusive_ptr<geometry::NSurface> const surface(new geometry::NPolygonSurface);
  surface->Assign(coords, normals, joined.GetIndices(), uvws);
  return surface;
}

}  // namespace corvanta::importer
