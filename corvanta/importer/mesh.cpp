#include "corvanta/importer/mesh.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "corvanta/importer/normals.h"
#include "corvanta/importer/numbering.h"

namespace corvanta::importer {

namespace {

namespace geometry = data::domain::geometry;
using data::domain::material::texture_mapping::NUVWMappingID;
using neutral::NTriple;

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

// The triangles of a mesh over those of its vertices that are used, each kind once.
class Joiner {
 public:
  struct Vertex {
    std::uint32_t number;  // the mesh's
    NTriple normal;
    std::array<float, 2> color;  // where the picture of colours has it
  };

  // `keepsApart`: whether vertices of the mesh stay apart that have all alike; `joinsNone`: whether
  // all corners do.
  Joiner(Arrays const& mesh, NCornerNormals const& normals, bool keepsApart, bool joinsNone,
         NCornerColors const& getColor)
      : m_mesh(mesh),
        m_keepsApart(keepsApart),
        m_joinsNone(joinsNone),
        m_getColor(getColor),
        m_ownNumbers(mesh.positions.size(), neutral::kNone),
        m_numbering(getColor ? 3 * mesh.triangles.size() : normals.GetMostDistinct()) {
    std::size_t corner = 0;
    for (neutral::NTriangle const& triangle : mesh.triangles) {
      for (std::uint32_t const vertex : triangle) Take(vertex, normals, corner++);
    }
  }

  std::vector<Vertex> const& GetVertices() const { return m_vertices; }
  std::vector<unsigned> const& GetIndices() const { return m_indices; }

 private:
  void Take(std::uint32_t vertex, NCornerNormals const& normals, std::size_t corner) {
    bool const isOwn = normals.IsOwn(corner) && !m_getColor;
    // One with its own normal is looked up once.
    if (isOwn && m_ownNumbers[vertex] != neutral::kNone) {
      m_indices.push_back(m_ownNumbers[vertex]);
      return;
    }
    Vertex const wanted{vertex, normals.Get(corner),
                        m_getColor ? m_getColor(corner) : std::array<float, 2>{}};
    if (m_joinsNone) {
      m_indices.push_back(static_cast<unsigned>(m_vertices.size()));
      m_vertices.push_back(wanted);
      return;
    }
    auto const [number, isNew] = m_numbering.Take(
        Hash(wanted), [&](std::uint32_t known) { return Equal(m_vertices[known], wanted); });
    if (isNew) m_vertices.push_back(wanted);
    if (isOwn) m_ownNumbers[vertex] = number;
    m_indices.push_back(number);
  }
  std::size_t Hash(Vertex const& vertex) const {
    std::size_t const begin = m_keepsApart ? vertex.number : 0;
    std::size_t hash = Mix(Mix(begin, m_mesh.positions[vertex.number]), vertex.normal);
    for (auto const& uvs : m_mesh.uvs) hash = Mix(hash, uvs[vertex.number]);
    return m_getColor ? Mix(Mix(hash, vertex.color[0]), vertex.color[1]) : hash;
  }
  bool Equal(Vertex const& a, Vertex const& b) const {
    if (a.normal != b.normal || a.color != b.color) return false;
    if (a.number == b.number) return true;
    if (m_keepsApart) return false;
    for (auto const& uvs : m_mesh.uvs) {
      if (uvs[a.number] != uvs[b.number]) return false;
    }
    return m_mesh.positions[a.number] == m_mesh.positions[b.number];
  }

  Arrays const& m_mesh;
  bool const m_keepsApart;
  bool const m_joinsNone;
  NCornerColors const& m_getColor;
  std::vector<std::uint32_t> m_ownNumbers;  // by the mesh's vertices
  NNumbering m_numbering;
  std::vector<Vertex> m_vertices;
  std::vector<unsigned> m_indices;
};

double GetCrease(neutral::NMesh const& mesh, std::optional<double> crease) {
  return crease.value_or(mesh.isFlat != 0 ? 0.0 : kUsualCrease);
}

void Append(std::vector<float>& floats, NTriple const& v) {
  floats.insert(floats.end(), v.begin(), v.end());
}

}  // namespace

bool IsFaceted(neutral::NMesh const& mesh, std::optional<double> crease) {
  return mesh.normals.count == 0 && GetCrease(mesh, crease) == 0.0;
}

boost::intrusive_ptr<geometry::NSurface> CreateSurface(neutral::NSceneView const& scene,
                                                       neutral::NMesh const& source,
                                                       std::optional<double> crease,
                                                       std::vector<std::uint32_t>* vertices,
                                                       NCornerColors const& getColor) {
  Arrays const mesh(scene, source);
  if (mesh.triangles.empty()) return nullptr;
  NCornerNormals const cornerNormals(mesh.positions, mesh.normals, mesh.triangles,
                                     GetCrease(source, crease));
  Joiner const joined(mesh, cornerNormals, vertices != nullptr,
                      vertices != nullptr && IsFaceted(source, crease), getColor);

  std::vector<float> coords;
  std::vector<float> normals;
  for (Joiner::Vertex const& vertex : joined.GetVertices()) {
    Append(coords, mesh.positions[vertex.number]);
    Append(normals, vertex.normal);
    if (vertices != nullptr) vertices->push_back(vertex.number);
  }
  std::map<NUVWMappingID, std::vector<data::structs::UVW>> uvws;
  for (unsigned set = 0; set != mesh.uvs.size(); ++set) {
    auto const id = mesh.uvs.size() == 1 && !getColor
                        ? data::domain::material::texture_mapping::NUVWID_FLAT
                        : static_cast<NUVWMappingID>(GetMappingId(set));
    auto& uvw = uvws[id];
    for (Joiner::Vertex const& vertex : joined.GetVertices()) {
      NTriple const& v = mesh.uvs[set][vertex.number];
      uvw.push_back({v[0], v[1], v[2]});
    }
  }

  if (getColor) {
    auto& uvw = uvws[static_cast<NUVWMappingID>(kColorsMappingId)];
    for (Joiner::Vertex const& vertex : joined.GetVertices()) {
      uvw.push_back({vertex.color[0], vertex.color[1], 0.0f});
    }
  }

  boost::intrusive_ptr<geometry::NSurface> const surface(new geometry::NPolygonSurface);
  surface->Assign(coords, normals, joined.GetIndices(), uvws);
  return surface;
}

}  // namespace corvanta::importer
