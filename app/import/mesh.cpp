#include "app/import/mesh.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <type_traits>
#include <unordered_map>
#include <vector>

namespace corvanta::app {

namespace {

namespace geometry = data::domain::geometry;
using data::domain::material::texture_mapping::NUVWMappingID;

static_assert(std::is_same_v<ai_real, float>);

std::size_t Mix(std::size_t hash, float value) {
  // Adding 0 makes one of the two zeros.
  return (hash ^ std::bit_cast<std::uint32_t>(value + 0.0f)) * 0x9E3779B97F4A7C15u;
}

std::size_t Mix(std::size_t hash, aiVector3D const& v) {
  hash = Mix(Mix(Mix(hash, v.x), v.y), v.z);
  return hash ^ (hash >> 32);
}

bool IsSame(aiVector3D const& a, aiVector3D const& b) {
  return a.x == b.x && a.y == b.y && a.z == b.z;
}

using Normals = std::vector<aiVector3D>;
using Sum = aiVector3t<double>;

Sum Wide(aiVector3D const& v) { return {v.x, v.y, v.z}; }
aiVector3D Narrow(Sum const& v) {
  return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

// The mesh's normals with length 1, (0, 0, 0) in place of those that point nowhere; none where none
// can be used.
Normals ReadNormals(aiMesh const& mesh) {
  constexpr double kRounding = 1e-5;
  if (!mesh.HasNormals()) return {};
  Normals normals(mesh.mNormals, mesh.mNormals + mesh.mNumVertices);
  bool areUsed = false;
  for (aiVector3D& normal : normals) {
    Sum const wide = Wide(normal);
    double const length = std::hypot(wide.x, wide.y, wide.z);
    bool const isUsed = std::isfinite(length) && length >= std::numeric_limits<float>::min();
    areUsed |= isUsed;
    if (!isUsed) {
      normal = aiVector3D();
    } else if (std::abs(length - 1.0) > kRounding) {
      normal = Narrow(wide / length);
    }
  }
  return areUsed ? normals : Normals();
}

// The triangles of a mesh over those of its vertices that are used, each kind once.
class Joiner {
 public:
  Joiner(aiMesh const& mesh, Normals const& normals)
      : m_mesh(mesh),
        m_normals(normals),
        m_numbers(
            0, [this](unsigned i) { return Hash(i); },
            [this](unsigned a, unsigned b) { return Equal(a, b); }) {
    for (unsigned i = 0; i != mesh.mNumFaces; ++i) {
      aiFace const& face = mesh.mFaces[i];
      if (face.mNumIndices != 3) continue;
      for (unsigned corner = 0; corner != 3; ++corner) Take(face.mIndices[corner]);
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
    std::size_t hash = Mix(0, m_mesh.mVertices[i]);
    for (unsigned set = 0; set != m_mesh.GetNumUVChannels(); ++set) {
      hash = Mix(hash, m_mesh.mTextureCoords[set][i]);
    }
    return m_normals.empty() ? hash : Mix(hash, m_normals[i]);
  }
  bool Equal(unsigned a, unsigned b) const {
    if (a == b) return true;
    for (unsigned set = 0; set != m_mesh.GetNumUVChannels(); ++set) {
      if (!IsSame(m_mesh.mTextureCoords[set][a], m_mesh.mTextureCoords[set][b])) return false;
    }
    return IsSame(m_mesh.mVertices[a], m_mesh.mVertices[b]) &&
           (m_normals.empty() || IsSame(m_normals[a], m_normals[b]));
  }

  aiMesh const& m_mesh;
  Normals const& m_normals;
  std::unordered_map<unsigned, unsigned, std::function<std::size_t(unsigned)>,
                     std::function<bool(unsigned, unsigned)>>
      m_numbers;
  std::vector<unsigned> m_vertices;
  std::vector<unsigned> m_indices;
};

// At each vertex the mean of the triangles that meet in its place, weighted by their areas; (0, 0,
// 1) where they cancel out. Vertices that differ in texture coordinates alone share a normal.
Normals ComputeNormals(aiMesh const& mesh, Joiner const& joined) {
  auto const hash = [](aiVector3D const& v) { return Mix(0, v); };
  std::unordered_map<aiVector3D, unsigned, decltype(hash), decltype(&IsSame)> places(0, hash,
                                                                                     &IsSame);
  std::vector<unsigned> placeOf;
  for (unsigned const vertex : joined.GetVertices()) {
    auto const next = static_cast<unsigned>(places.size());
    placeOf.push_back(places.try_emplace(mesh.mVertices[vertex], next).first->second);
  }

  std::vector<Sum> sums(places.size());
  auto const& indices = joined.GetIndices();
  for (std::size_t i = 0; i != indices.size(); i += 3) {
    Sum const a = Wide(mesh.mVertices[joined.GetVertices()[indices[i]]]);
    Sum const b = Wide(mesh.mVertices[joined.GetVertices()[indices[i + 1]]]);
    Sum const c = Wide(mesh.mVertices[joined.GetVertices()[indices[i + 2]]]);
    Sum const area = (b - a) ^ (c - a);
    for (std::size_t corner = i; corner != i + 3; ++corner) sums[placeOf[indices[corner]]] += area;
  }

  Normals normals;
  for (unsigned const place : placeOf) {
    Sum const& sum = sums[place];
    double const length = std::hypot(sum.x, sum.y, sum.z);
    normals.push_back(Narrow(length > 0.0 ? sum / length : Sum(0.0, 0.0, 1.0)));
  }
  return normals;
}

void Append(std::vector<float>& floats, aiVector3D const& v) {
  floats.insert(floats.end(), {v.x, v.y, v.z});
}

}  // namespace

boost::intrusive_ptr<geometry::NSurface> CreateSurface(aiMesh const& mesh) {
  Normals const given = ReadNormals(mesh);
  Joiner const joined(mesh, given);
  if (joined.GetIndices().empty()) return nullptr;

  auto const& vertices = joined.GetVertices();
  bool const isComplete =
      !given.empty() && std::none_of(vertices.begin(), vertices.end(), [&](unsigned vertex) {
        return given[vertex] == aiVector3D();
      });
  Normals const computed = isComplete ? Normals() : ComputeNormals(mesh, joined);
  std::vector<float> coords;
  std::vector<float> normals;
  for (std::size_t i = 0; i != vertices.size(); ++i) {
    Append(coords, mesh.mVertices[vertices[i]]);
    bool const isGiven = isComplete || (!given.empty() && given[vertices[i]] != aiVector3D());
    Append(normals, isGiven ? given[vertices[i]] : computed[i]);
  }

  std::map<NUVWMappingID, std::vector<data::structs::UVW>> uvws;
  unsigned const setCount = mesh.GetNumUVChannels();
  for (unsigned set = 0; set != setCount; ++set) {
    auto const id = setCount == 1 ? data::domain::material::texture_mapping::NUVWID_FLAT
                                  : static_cast<NUVWMappingID>(GetMappingId(set));
    auto& uvw = uvws[id];
    for (unsigned const vertex : joined.GetVertices()) {
      aiVector3D const& v = mesh.mTextureCoords[set][vertex];
      uvw.push_back({v.x, v.y, v.z});
    }
  }

  boost::intrusive_ptr<geometry::NSurface> const surface(new geometry::NPolygonSurface);
  surface->Assign(coords, normals, joined.GetIndices(), uvws);
  return surface;
}

}  // namespace corvanta::app
