#include "corvanta/renderer/scene/NMeshes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <exception>
#include <optional>
#include <utility>

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/material/texture_mapping/NProjectionMapping.h"
#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/domain/material/texture_mapping/map_surface.h"
#include "corvanta/renderer/scene/solid.h"

namespace corvanta::renderer {

namespace {

namespace mapping = data::domain::material::texture_mapping;
using data::domain::geometry::NGeometryNode;
using data::domain::geometry::NSurface;
using data::structs::UVW;
using data::structs::XYZ;

bool IsFinite(XYZ const& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

float Finite(float value) { return std::isfinite(value) ? value : 0.0f; }

/// Whether the triangle whose corners begin at `first` in the indices is drawn.
bool IsDrawn(NSurface const& surface, std::size_t first) {
  auto const& coords = surface.GetCoords();
  auto const begin = surface.GetIndices().begin() + static_cast<std::ptrdiff_t>(first);
  return std::all_of(begin, begin + 3, [&coords](unsigned index) {
    return index < coords.size() && IsFinite(coords[index]);
  });
}

/// The indices of the triangles that are drawn.
std::vector<unsigned> GetDrawnIndices(NSurface const& surface) {
  auto const& indices = surface.GetIndices();
  std::vector<unsigned> drawn;
  drawn.reserve(indices.size());
  for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
    if (IsDrawn(surface, i)) {
      drawn.insert(drawn.end(), {indices[i], indices[i + 1], indices[i + 2]});
    }
  }
  return drawn;
}

bool HasTriangle(std::vector<unsigned> const& indices) {
  if (indices.empty()) return true;
  for (std::size_t i = 0; i != indices.size(); i += 3) {
    unsigned const a = indices[i], b = indices[i + 1], c = indices[i + 2];
    if (a != b && b != c && a != c) return true;
  }
  return false;
}

/// Makes the indices of triangles with fewer than three corners those of lines, behind which are
/// those of points; where these begin.
std::size_t PartLines(std::vector<unsigned>& indices) {
  std::vector<unsigned> lines, points;
  for (std::size_t i = 0; i != indices.size(); i += 3) {
    unsigned const from = indices[i], to = indices[i + 1] != from ? indices[i + 1] : indices[i + 2];
    if (from == to) {
      points.push_back(from);
    } else {
      lines.insert(lines.end(), {from, to});
    }
  }
  std::size_t const end = lines.size();
  lines.insert(lines.end(), points.begin(), points.end());
  indices = std::move(lines);
  return end;
}

struct Vertex {
  float position[3];
  float normal[3];
};

Vertex MakeVertex(XYZ const& position, XYZ const& normal) {
  Vertex vertex{{position.x, position.y, position.z}, {0.0f, 0.0f, 0.0f}};
  if (IsFinite(normal)) {
    vertex.normal[0] = normal.x;
    vertex.normal[1] = normal.y;
    vertex.normal[2] = normal.z;
  }
  return vertex;
}

void Append(std::vector<float>& floats, UVW const& coords) {
  floats.insert(floats.end(), {Finite(coords.u), Finite(coords.v)});
}

void Append(std::vector<float>& floats, XYZ const& tangent, XYZ const& binormal) {
  for (XYZ const& v : {tangent, binormal}) {
    floats.insert(floats.end(), {Finite(v.x), Finite(v.y), Finite(v.z)});
  }
}

template <class T>
NGlBuffer Upload(std::vector<T> const& values) {
  NGlBuffer buffer;
  glBindBuffer(GL_ARRAY_BUFFER, buffer.Get());
  glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(values.size() * sizeof(T)), values.data(),
               GL_STATIC_DRAW);
  return buffer;
}

/// Makes the bound vertex array read an attribute of `size` floats from `buffer`.
/// Units: `stride` and `offset` are bytes.
void SetAttribute(unsigned location, NGlBuffer const& buffer, int size, std::size_t stride,
                  std::size_t offset) {
  glBindBuffer(GL_ARRAY_BUFFER, buffer.Get());
  glVertexAttribPointer(location, size, GL_FLOAT, GL_FALSE, static_cast<GLsizei>(stride),
                        reinterpret_cast<void const*>(offset));
  glEnableVertexAttribArray(location);
}

void SetVertices(NGlBuffer const& vertices) {
  SetAttribute(kPosition, vertices, 3, sizeof(Vertex), offsetof(Vertex, position));
  SetAttribute(kNormal, vertices, 3, sizeof(Vertex), offsetof(Vertex, normal));
}

void SetCoords(NTextureSlot slot, NGlBuffer const& coords) {
  SetAttribute(kFirstCoords + slot, coords, 2, 2 * sizeof(float), 0);
}

void SetTangents(NGlBuffer const& tangents) {
  SetAttribute(kTangent, tangents, 3, 6 * sizeof(float), 0);
  SetAttribute(kBinormal, tangents, 3, 6 * sizeof(float), 3 * sizeof(float));
}

/// The texture coordinates of one mapping at the corners of a surface's triangles.
class MappedSurface {
 public:
  MappedSurface(NDrawItem::Path const& path, NSurface const& surface,
                mapping::NTextureMapping const& used)
      : m_surface(surface) {
    if (auto const* const uvw = dynamic_cast<mapping::NUVWMapping const*>(&used)) {
      uvw->ComputeTextureCoords(surface, m_coords);
      uvw->ComputeTangents(surface, m_tangents, m_binormals);
    } else if (auto const* const projection =
                   dynamic_cast<mapping::NProjectionMapping const*>(&used)) {
      Project(path, *projection);
    }
    std::size_t const count = surface.GetCoords().size();
    m_coords.resize(std::max(m_coords.size(), count));
    m_tangents.resize(count);
    m_binormals.resize(count);
  }

  UVW const& GetCoords(std::size_t corner) const {
    return m_coords[m_indices.empty() ? m_surface.GetIndices()[corner] : m_indices[corner]];
  }
  XYZ const& GetTangent(unsigned vertex) const { return m_tangents[vertex]; }
  XYZ const& GetBinormal(unsigned vertex) const { return m_binormals[vertex]; }

 private:
  void Project(NDrawItem::Path const& path, mapping::NProjectionMapping const& projection) {
    auto const& coords = m_surface.GetCoords();
    try {
      mapping::NMappedCoords mapped = mapping::MapSurface(projection, path, m_surface);
      m_coords = std::move(mapped.coords);
      m_indices = std::move(mapped.indices);
      projection.ComputeTangents(path,
                                 {static_cast<unsigned>(coords.size()), &coords.data()->x,
                                  &m_surface.GetNormals().data()->x},
                                 m_tangents, m_binormals);
    } catch (std::exception const&) {
      // The projection doesn't apply to this model.
      m_coords.clear();
      m_indices.clear();
    }
  }

  NSurface const& m_surface;
  std::vector<UVW> m_coords;
  std::vector<unsigned> m_indices;  // in place of the surface's, where a seam was cut
  std::vector<XYZ> m_tangents, m_binormals;
};

/// The vertices of a surface with a texture projection: each corner of a triangle is one of its
/// own, because each texture has its seam elsewhere.
struct Corners {
  Corners(NDrawItem::Path const& path, NSurface const& surface, NTextureMappings const& mappings) {
    std::array<std::optional<MappedSurface>, kCoordsCount> mapped;
    for (NTextureSlot const slot : kCoordsSlots) {
      if (mappings[slot]) mapped[slot].emplace(path, surface, *mappings[slot]);
    }
    auto const& indices = surface.GetIndices();
    for (std::size_t first = 0; first + 2 < indices.size(); first += 3) {
      if (!IsDrawn(surface, first)) continue;
      for (std::size_t i = first; i != first + 3; ++i) {
        unsigned const vertex = indices[i];
        vertices.push_back(MakeVertex(surface.GetCoords()[vertex], surface.GetNormals()[vertex]));
        for (NTextureSlot const slot : kCoordsSlots) {
          if (mapped[slot]) Append(coords[slot], mapped[slot]->GetCoords(i));
        }
        if (auto const& bump = mapped[NTS_BUMP]) {
          Append(tangents, bump->GetTangent(vertex), bump->GetBinormal(vertex));
        }
      }
    }
  }

  std::vector<Vertex> vertices;
  std::array<std::vector<float>, kCoordsCount> coords;
  std::vector<float> tangents;
};

}  // namespace

struct NMeshes::Shared {
  core::node::NNodeReference<NGeometryNode const> geometry;
  NGlBuffer vertices;
  NGlBuffer indices;
  GLsizei count = 0;  // of the indices of triangles or lines, behind which those of points are
  GLsizei pointCount = 0;
  bool hasTriangles = true;
  bool isSolid = false;
  std::map<UVWType, NGlBuffer> coords;
  std::map<UVWType, NGlBuffer> tangents;  // with the binormals
  std::map<std::array<std::optional<UVWType>, kCoordsCount>, NGlVertexArray> arrays;  // by slot
};

struct NMeshes::Projected {
  NTextureMappings mappings;
  std::vector<std::uint64_t> surfaces;
  std::vector<NMeshPart> parts;
  std::vector<NGlBuffer> buffers;
  std::vector<NGlVertexArray> arrays;
};

NMeshes::NMeshes() = default;

NMeshes::~NMeshes() = default;

bool NMeshes::IsProjected(NTextureMappings const& mappings) {
  return std::any_of(mappings.begin(), mappings.end(), [](auto const& used) {
    return dynamic_cast<mapping::NProjectionMapping const*>(used.get()) != nullptr;
  });
}

std::vector<NMeshPart> NMeshes::Get(NDrawItem const& item, NGeometryNode const& geometry,
                                    NTextureMappings const& mappings) {
  std::vector<NMeshPart> parts;
  if (!IsProjected(mappings)) {
    for (auto const& surface : geometry.GetSurfaces()) {
      AddShared(geometry, *surface, mappings, parts);
    }
    return parts;
  }
  std::vector<std::uint64_t> surfaces;
  for (auto const& surface : geometry.GetSurfaces()) {
    surfaces.push_back(surface->GetCreationNumber());
  }
  auto& projected = m_projected[item.path];
  if (!projected || projected->mappings != mappings || projected->surfaces != surfaces) {
    projected = std::make_unique<Projected>();
    projected->mappings = mappings;
    projected->surfaces = surfaces;
    for (auto const& surface : geometry.GetSurfaces()) {
      projected->parts.push_back(MakeProjected(item, *surface, mappings));
    }
  }
  return projected->parts;
}

void NMeshes::Forget(NDirtyFlags const& flags) {
  for (std::uint64_t const number : flags.changedSurfaces) m_shared.erase(number);
  if (flags.structure) {
    std::erase_if(m_shared, [](auto const& entry) { return !entry.second->geometry.Get(); });
    std::erase_if(m_projected, [](auto const& entry) { return !IsValid(entry.first); });
  }
  std::erase_if(m_projected, [&flags](auto const& entry) {
    auto const& surfaces = entry.second->surfaces;
    return flags.projections || std::any_of(surfaces.begin(), surfaces.end(), [&](auto number) {
             return flags.changedSurfaces.contains(number);
           });
  });
}

void NMeshes::AddShared(NGeometryNode const& geometry, NSurface const& surface,
                        NTextureMappings const& mappings, std::vector<NMeshPart>& parts) {
  auto& mesh = m_shared[surface.GetCreationNumber()];
  if (!mesh) {
    ++m_meshUploadCount;
    std::vector<Vertex> vertices;
    vertices.reserve(surface.GetCoords().size());
    for (std::size_t i = 0; i != surface.GetCoords().size(); ++i) {
      vertices.push_back(MakeVertex(surface.GetCoords()[i], surface.GetNormals()[i]));
    }
    std::vector<unsigned> indices = GetDrawnIndices(surface);
    mesh = std::make_unique<Shared>();
    mesh->geometry = geometry;
    mesh->vertices = Upload(vertices);
    mesh->hasTriangles = HasTriangle(indices);
    std::size_t const lineEnd = mesh->hasTriangles ? indices.size() : PartLines(indices);
    mesh->indices = Upload(indices);
    mesh->count = static_cast<GLsizei>(lineEnd);
    mesh->pointCount = static_cast<GLsizei>(indices.size() - lineEnd);
    mesh->isSolid = mesh->hasTriangles && IsSolid(surface.GetCoords(), indices);
  }
  std::array<std::optional<UVWType>, kCoordsCount> types;
  for (NTextureSlot const slot : kCoordsSlots) {
    auto const* const uvw = dynamic_cast<mapping::NUVWMapping const*>(mappings[slot].get());
    if (uvw != nullptr) types[slot] = uvw->GetUVWMappingType();
  }
  auto found = mesh->arrays.find(types);
  if (found == mesh->arrays.end()) {
    found = mesh->arrays.emplace(types, NGlVertexArray()).first;
    glBindVertexArray(found->second.Get());
    SetVertices(mesh->vertices);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh->indices.Get());
    for (NTextureSlot const slot : kCoordsSlots) {
      if (types[slot]) AddCoords(*mesh, slot, surface, *types[slot]);
    }
  }
  GLuint const array = found->second.Get();
  parts.push_back({array, mesh->count, true,
                   mesh->hasTriangles ? GLenum{GL_TRIANGLES} : GLenum{GL_LINES}, 0, mesh->isSolid});
  if (mesh->pointCount == 0) return;
  parts.push_back(
      {array, mesh->pointCount, true, GL_POINTS, static_cast<std::size_t>(mesh->count), false});
}

void NMeshes::AddCoords(Shared& mesh, NTextureSlot slot, NSurface const& surface, UVWType type) {
  mapping::NUVWMapping const uvw(type);
  if (!mesh.coords.contains(type)) {
    ++m_coordsUploadCount;
    std::vector<UVW> coords;
    uvw.ComputeTextureCoords(surface, coords);
    std::vector<float> floats;
    for (UVW const& c : coords) Append(floats, c);
    mesh.coords.emplace(type, Upload(floats));
  }
  SetCoords(slot, mesh.coords.at(type));
  if (slot != NTS_BUMP) return;
  if (!mesh.tangents.contains(type)) {
    ++m_coordsUploadCount;
    std::vector<XYZ> tangents, binormals;
    uvw.ComputeTangents(surface, tangents, binormals);
    std::vector<float> floats;
    for (std::size_t i = 0; i != tangents.size(); ++i) Append(floats, tangents[i], binormals[i]);
    mesh.tangents.emplace(type, Upload(floats));
  }
  SetTangents(mesh.tangents.at(type));
}

NMeshPart NMeshes::MakeProjected(NDrawItem const& item, NSurface const& surface,
                                 NTextureMappings const& mappings) {
  if (surface.GetCoords().empty()) return {};
  Corners const corners(item.path, surface, mappings);
  ++m_meshUploadCount;
  Projected& projected = *m_projected.at(item.path);
  projected.arrays.emplace_back();
  glBindVertexArray(projected.arrays.back().Get());
  auto const upload = [&projected](auto const& values) -> NGlBuffer const& {
    return projected.buffers.emplace_back(Upload(values));
  };
  SetVertices(upload(corners.vertices));
  for (NTextureSlot const slot : kCoordsSlots) {
    if (!mappings[slot]) continue;
    ++m_coordsUploadCount;
    SetCoords(slot, upload(corners.coords[slot]));
  }
  if (mappings[NTS_BUMP]) SetTangents(upload(corners.tangents));
  return {projected.arrays.back().Get(),
          static_cast<GLsizei>(corners.vertices.size()),
          false,
          GL_TRIANGLES,
          0,
          false};
}

VX_Math::Box3 NMeshes::GetFiniteBox(NGeometryNode const& geometry) {
  VX_Math::Box3 box;
  for (auto const& surface : geometry.GetSurfaces()) {
    for (unsigned const index : GetDrawnIndices(*surface)) {
      XYZ const& v = surface->GetCoords()[index];
      box.ExtendBy(VX_Math::Vec3(v.x, v.y, v.z));
    }
  }
  return box;
}

}  // namespace corvanta::renderer
