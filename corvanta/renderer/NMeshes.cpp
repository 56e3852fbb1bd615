#include "corvanta/renderer/NMeshes.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <utility>

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/material/texture_mapping/NProjectionMapping.h"
#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/domain/material/texture_mapping/map_surface.h"

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

/// The indices of the triangles that are drawn.
std::vector<unsigned> GetDrawnIndices(NSurface const& surface) {
  auto const& coords = surface.GetCoords();
  auto const& indices = surface.GetIndices();
  std::vector<unsigned> drawn;
  drawn.reserve(indices.size());
  for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
    bool const isWhole = std::all_of(
        indices.begin() + static_cast<std::ptrdiff_t>(i),
        indices.begin() + static_cast<std::ptrdiff_t>(i + 3),
        [&](unsigned index) { return index < coords.size() && IsFinite(coords[index]); });
    if (isWhole) drawn.insert(drawn.end(), {indices[i], indices[i + 1], indices[i + 2]});
  }
  return drawn;
}

struct Vertex {
  float place[3];
  float normal[3];
};

Vertex MakeVertex(XYZ const& place, XYZ const& normal) {
  Vertex vertex{{place.x, place.y, place.z}, {0.0f, 0.0f, 0.0f}};
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
std::size_t ByteCount(std::vector<T> const& values) {
  return values.size() * sizeof(T);
}

bool IsThrown(NMappings const& mappings) {
  return std::any_of(mappings.begin(), mappings.end(), [](auto const& laid) {
    return dynamic_cast<mapping::NProjectionMapping const*>(laid.get()) != nullptr;
  });
}

/// The texture coordinates at the corners of a surface's triangles, as a texture is laid.
class Laid {
 public:
  Laid(NDrawItem::Path const& path, NSurface const& surface, mapping::NTextureMapping const& laid)
      : m_surface(surface) {
    auto const& coords = surface.GetCoords();
    if (auto const* const uvw = dynamic_cast<mapping::NUVWMapping const*>(&laid)) {
      uvw->ComputeTextureCoords(surface, m_coords);
      uvw->ComputeTangents(surface, m_tangents, m_binormals);
    } else if (auto const* const thrown = dynamic_cast<mapping::NProjectionMapping const*>(&laid)) {
      try {
        mapping::NMappedCoords mapped = mapping::MapSurface(*thrown, path, surface);
        m_coords = std::move(mapped.coords);
        m_indices = std::move(mapped.indices);
        thrown->ComputeTangents(path,
                                {static_cast<unsigned>(coords.size()), &coords.data()->x,
                                 &surface.GetNormals().data()->x},
                                m_tangents, m_binormals);
      } catch (std::exception const&) {
        // The node doesn't throw onto this model.
        m_coords.clear();
        m_indices.clear();
      }
    }
    m_coords.resize(std::max(m_coords.size(), coords.size()));
    m_tangents.resize(coords.size());
    m_binormals.resize(coords.size());
  }

  UVW const& GetCoords(std::size_t corner) const {
    return m_coords[m_indices.empty() ? m_surface.GetIndices()[corner] : m_indices[corner]];
  }
  XYZ const& GetTangent(unsigned vertex) const { return m_tangents[vertex]; }
  XYZ const& GetBinormal(unsigned vertex) const { return m_binormals[vertex]; }

 private:
  NSurface const& m_surface;
  std::vector<UVW> m_coords;
  std::vector<unsigned> m_indices;  // in place of the surface's, where a seam was cut
  std::vector<XYZ> m_tangents, m_binormals;
};

}  // namespace

struct NMeshes::Shared {
  core::node::NNodeReference<NGeometryNode const> geometry;
  NGlBuffer vertices;
  NGlBuffer indices;
  GLsizei count = 0;
  std::map<unsigned, NGlBuffer> coords;    // by the type of their UVW mapping
  std::map<unsigned, NGlBuffer> tangents;  // with the binormals
  // By the type of the mapping of each slot, -1 where there is none.
  std::map<std::array<long long, NS_COUNT>, NGlVertexArray> arrays;
};

struct NMeshes::Thrown {
  NMappings mappings;
  std::vector<std::uint64_t> surfaces;
  std::vector<NMeshPart> parts;
  std::vector<NGlBuffer> buffers;
  std::vector<NGlVertexArray> arrays;
};

NMeshes::NMeshes() = default;

NMeshes::~NMeshes() = default;

std::vector<NMeshPart> NMeshes::Get(NDrawItem const& item, NGeometryNode const& geometry,
                                    NMappings const& mappings) {
  std::vector<NMeshPart> parts;
  if (!IsThrown(mappings)) {
    for (auto const& surface : geometry.GetSurfaces()) {
      parts.push_back(GetShared(geometry, *surface, mappings));
    }
    return parts;
  }
  std::vector<std::uint64_t> surfaces;
  for (auto const& surface : geometry.GetSurfaces()) {
    surfaces.push_back(surface->GetCreationNumber());
  }
  auto& thrown = m_thrown[item.path];
  if (!thrown || thrown->mappings != mappings || thrown->surfaces != surfaces) {
    thrown = std::make_unique<Thrown>();
    thrown->mappings = mappings;
    thrown->surfaces = surfaces;
    for (auto const& surface : geometry.GetSurfaces()) {
      thrown->parts.push_back(MakeThrown(item, *surface, mappings));
    }
  }
  return thrown->parts;
}

void NMeshes::Forget(NMarks const& marks) {
  for (std::uint64_t const number : marks.changedSurfaces) m_shared.erase(number);
  if (marks.structure) {
    std::erase_if(m_shared, [](auto const& entry) { return !entry.second->geometry.Get(); });
    std::erase_if(m_thrown, [](auto const& entry) { return !IsValid(entry.first); });
  }
  std::erase_if(m_thrown, [&marks](auto const& entry) {
    auto const& surfaces = entry.second->surfaces;
    return marks.projections || std::any_of(surfaces.begin(), surfaces.end(), [&](auto number) {
             return marks.changedSurfaces.contains(number);
           });
  });
}

NMeshPart NMeshes::GetShared(NGeometryNode const& geometry, NSurface const& surface,
                             NMappings const& mappings) {
  auto& mesh = m_shared[surface.GetCreationNumber()];
  if (!mesh) {
    ++m_meshUploadCount;
    std::vector<Vertex> vertices;
    for (std::size_t i = 0; i != surface.GetCoords().size(); ++i) {
      vertices.push_back(MakeVertex(surface.GetCoords()[i], surface.GetNormals()[i]));
    }
    std::vector<unsigned> const indices = GetDrawnIndices(surface);
    mesh = std::make_unique<Shared>();
    mesh->geometry = geometry;
    mesh->vertices = Upload(GL_ARRAY_BUFFER, vertices.data(), ByteCount(vertices));
    mesh->indices = Upload(GL_ARRAY_BUFFER, indices.data(), ByteCount(indices));
    mesh->count = static_cast<GLsizei>(indices.size());
  }
  std::array<long long, NS_COUNT> types{};
  for (std::size_t slot = 0; slot != NS_COUNT; ++slot) {
    auto const* const uvw = dynamic_cast<mapping::NUVWMapping const*>(mappings[slot].get());
    types[slot] = uvw == nullptr ? -1 : static_cast<long long>(uvw->GetUVWMappingType());
  }
  auto found = mesh->arrays.find(types);
  if (found == mesh->arrays.end()) {
    found = mesh->arrays.emplace(types, NGlVertexArray()).first;
    glBindVertexArray(found->second.Get());
    SetAttribute(kPosition, mesh->vertices, 3, sizeof(Vertex), 0);
    SetAttribute(kNormal, mesh->vertices, 3, sizeof(Vertex), 12);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh->indices.Get());
    for (unsigned slot = 0; slot != NS_COUNT; ++slot) {
      if (types[slot] >= 0) AddCoords(*mesh, slot, surface, static_cast<unsigned>(types[slot]));
    }
  }
  return {found->second.Get(), mesh->count, true};
}

void NMeshes::AddCoords(Shared& mesh, unsigned slot, NSurface const& surface,
                        unsigned mappingType) {
  mapping::NUVWMapping const laid(static_cast<mapping::NUVWMappingType>(mappingType));
  if (!mesh.coords.contains(mappingType)) {
    ++m_coordsUploadCount;
    std::vector<UVW> coords;
    laid.ComputeTextureCoords(surface, coords);
    std::vector<float> floats;
    for (UVW const& c : coords) Append(floats, c);
    mesh.coords.emplace(mappingType, Upload(GL_ARRAY_BUFFER, floats.data(), ByteCount(floats)));
  }
  SetAttribute(kFirstCoords + slot, mesh.coords.at(mappingType), 2, 8, 0);
  if (slot != NS_BUMP) return;
  if (!mesh.tangents.contains(mappingType)) {
    ++m_coordsUploadCount;
    std::vector<XYZ> tangents, binormals;
    laid.ComputeTangents(surface, tangents, binormals);
    std::vector<float> floats;
    for (std::size_t i = 0; i != tangents.size(); ++i) Append(floats, tangents[i], binormals[i]);
    mesh.tangents.emplace(mappingType, Upload(GL_ARRAY_BUFFER, floats.data(), ByteCount(floats)));
  }
  SetAttribute(kTangent, mesh.tangents.at(mappingType), 3, 24, 0);
  SetAttribute(kBinormal, mesh.tangents.at(mappingType), 3, 24, 12);
}

// A corner of a triangle becomes a vertex of its own: at a seam each texture cuts elsewhere.
NMeshPart NMeshes::MakeThrown(NDrawItem const& item, NSurface const& surface,
                              NMappings const& mappings) {
  std::array<std::optional<Laid>, NS_COUNT> laid;
  std::array<std::vector<float>, NS_COUNT> coords;
  std::vector<float> tangents;
  std::vector<Vertex> vertices;
  if (surface.GetCoords().empty()) return {};
  for (std::size_t slot = 0; slot != NS_COUNT; ++slot) {
    if (mappings[slot]) laid[slot].emplace(item.path, surface, *mappings[slot]);
  }
  auto const& indices = surface.GetIndices();
  auto const& places = surface.GetCoords();
  for (std::size_t corner = 0; corner + 2 < indices.size(); corner += 3) {
    bool isWhole = true;
    for (std::size_t i = corner; i != corner + 3; ++i) {
      isWhole = isWhole && indices[i] < places.size() && IsFinite(places[indices[i]]);
    }
    for (std::size_t i = corner; isWhole && i != corner + 3; ++i) {
      unsigned const vertex = indices[i];
      vertices.push_back(MakeVertex(places[vertex], surface.GetNormals()[vertex]));
      for (std::size_t slot = 0; slot != NS_COUNT; ++slot) {
        if (laid[slot]) Append(coords[slot], laid[slot]->GetCoords(i));
      }
      if (auto const& bump = laid[NS_BUMP]) {
        Append(tangents, bump->GetTangent(vertex), bump->GetBinormal(vertex));
      }
    }
  }

  ++m_meshUploadCount;
  Thrown& thrown = *m_thrown.at(item.path);
  thrown.arrays.emplace_back();
  glBindVertexArray(thrown.arrays.back().Get());
  auto const add = [&](auto const& values) -> NGlBuffer const& {
    return thrown.buffers.emplace_back(Upload(GL_ARRAY_BUFFER, values.data(), ByteCount(values)));
  };
  NGlBuffer const& corners = add(vertices);
  SetAttribute(kPosition, corners, 3, sizeof(Vertex), 0);
  SetAttribute(kNormal, corners, 3, sizeof(Vertex), 12);
  for (unsigned slot = 0; slot != NS_COUNT; ++slot) {
    if (!laid[slot]) continue;
    ++m_coordsUploadCount;
    SetAttribute(kFirstCoords + slot, add(coords[slot]), 2, 8, 0);
  }
  if (laid[NS_BUMP]) {
    NGlBuffer const& frames = add(tangents);
    SetAttribute(kTangent, frames, 3, 24, 0);
    SetAttribute(kBinormal, frames, 3, 24, 12);
  }
  return {thrown.arrays.back().Get(), static_cast<GLsizei>(vertices.size()), false};
}

void NMeshes::SetAttribute(unsigned place, NGlBuffer const& buffer, int size, std::size_t stride,
                           std::size_t offset) const {
  glBindBuffer(GL_ARRAY_BUFFER, buffer.Get());
  glVertexAttribPointer(place, size, GL_FLOAT, GL_FALSE, static_cast<GLsizei>(stride),
                        reinterpret_cast<void const*>(offset));
  glEnableVertexAttribArray(place);
}

NGlBuffer NMeshes::Upload(GLenum kind, void const* data, std::size_t bytes) const {
  NGlBuffer buffer;
  glBindBuffer(kind, buffer.Get());
  glBufferData(kind, static_cast<GLsizeiptr>(bytes), data, GL_STATIC_DRAW);
  return buffer;
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
