#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/material/texture_mapping/NTextureMapping.h"
#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/renderer/gl/objects.h"
#include "corvanta/renderer/gl/shaders.h"
#include "corvanta/renderer/scene/NDrawList.h"
#include "corvanta/vx_math/Box3.h"

namespace corvanta::renderer {

/// The mappings of a material's textures, by slot; null where there is none.
using NTextureMappings =
    std::array<boost::intrusive_ptr<data::domain::material::texture_mapping::NTextureMapping const>,
               kCoordsCount>;

/// What is drawn by one call.
struct NMeshPart {
  bool IsOfTriangles() const { return mode == GL_TRIANGLES; }

  GLuint vertexArray = 0;
  GLsizei count = 0;
  bool isIndexed = false;
  GLenum mode = GL_TRIANGLES;
  std::size_t first = 0;  // of the indices
  bool isSolid = false;   // see IsSolid
};

/// The meshes of geometries on the graphics processor. A surface is uploaded once for all models
/// that show it, and again when an event has named it. Where texture coordinates come from a
/// projection, each occurrence of a model has a mesh of its own.
///
/// Triangles with an index outside the coordinates or a corner that isn't finite are skipped. A
/// surface whose triangles all have fewer than three different corners is one of lines and points:
/// (a, b, b) is a line, (a, a, a) a point.
class NMeshes {
 public:
  NMeshes();
  ~NMeshes();

  /// The parts that draw `geometry` as the model of `item`, one or two for each surface. They are
  /// valid until the next call of Forget.
  std::vector<NMeshPart> Get(NDrawItem const& item,
                             data::domain::geometry::NGeometryNode const& geometry,
                             NTextureMappings const& mappings);
  /// Whether each occurrence of a model has a mesh of its own.
  static bool IsProjected(NTextureMappings const& mappings);
  /// Drops the surfaces that changed, what projections made if one changed, and what has gone.
  void Forget(NDirtyFlags const& flags);
  /// The box of the finite corners of a model's triangles, in its own frame.
  static VX_Math::Box3 GetFiniteBox(data::domain::geometry::NGeometryNode const& geometry);

  /// How many meshes were uploaded, and sets of texture coordinates or tangents for them.
  std::size_t GetMeshUploadCount() const { return m_meshUploadCount; }
  std::size_t GetCoordsUploadCount() const { return m_coordsUploadCount; }

 private:
  struct Shared;
  struct Projected;
  using Surface = data::domain::geometry::NSurface;
  using UVWType = data::domain::material::texture_mapping::NUVWMappingType;

  void AddShared(data::domain::geometry::NGeometryNode const& geometry, Surface const& surface,
                 NTextureMappings const& mappings, std::vector<NMeshPart>& parts);
  void AddCoords(Shared& mesh, NTextureSlot slot, Surface const& surface, UVWType type);
  NMeshPart MakeProjected(NDrawItem const& item, Surface const& surface,
                          NTextureMappings const& mappings);

  std::unordered_map<std::uint64_t, std::unique_ptr<Shared>> m_shared;  // by creation number
  std::map<NDrawItem::Path, std::unique_ptr<Projected>> m_projected;
  std::size_t m_meshUploadCount = 0;
  std::size_t m_coordsUploadCount = 0;
};

}  // namespace corvanta::renderer
