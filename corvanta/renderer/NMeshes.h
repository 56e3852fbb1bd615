#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/material/texture_mapping/NTextureMapping.h"
#include "corvanta/renderer/NDrawList.h"
#include "corvanta/renderer/gl/objects.h"
#include "corvanta/renderer/gl/shaders.h"
#include "corvanta/vx_math/Box3.h"

namespace corvanta::renderer {

/// How the textures of a material are laid, by slot; null where there is none.
using NMappings =
    std::array<boost::intrusive_ptr<data::domain::material::texture_mapping::NTextureMapping const>,
               NS_COUNT>;

/// What is drawn by one call.
struct NMeshPart {
  GLuint vertexArray = 0;
  GLsizei count = 0;
  bool isIndexed = false;
};

/// The meshes of geometries on the graphics processor. A surface is loaded once for all models that
/// show it, and again when an event has named it. Where texture coordinates are thrown by a
/// projection, each model has a mesh of its own.
///
/// Triangles with an index outside the coordinates or a corner that isn't finite are left out.
class NMeshes {
 public:
  NMeshes();
  ~NMeshes();

  /// What shows `geometry` as the model of `item`, its textures laid by `mappings`.
  std::vector<NMeshPart> Get(NDrawItem const& item,
                             data::domain::geometry::NGeometryNode const& geometry,
                             NMappings const& mappings);
  /// Forgets the surfaces that changed, what was thrown by projections if they did, and what has
  /// gone.
  void Forget(NMarks const& marks);
  /// The box of the finite corners of a model's triangles, in its own frame.
  static VX_Math::Box3 GetFiniteBox(data::domain::geometry::NGeometryNode const& geometry);

  /// How many meshes were uploaded, and sets of texture coordinates or tangents for them.
  std::size_t GetMeshUploadCount() const { return m_meshUploadCount; }
  std::size_t GetCoordsUploadCount() const { return m_coordsUploadCount; }

 private:
  struct Shared;
  struct Thrown;
  using Surface = data::domain::geometry::NSurface;

  NMeshPart GetShared(data::domain::geometry::NGeometryNode const& geometry, Surface const& surface,
                      NMappings const& mappings);
  void AddCoords(Shared& mesh, unsigned slot, Surface const& surface, unsigned mappingType);
  NMeshPart MakeThrown(NDrawItem const& item, Surface const& surface, NMappings const& mappings);
  void SetAttribute(unsigned place, NGlBuffer const& buffer, int size, std::size_t stride,
                    std::size_t offset) const;
  NGlBuffer Upload(GLenum kind, void const* data, std::size_t bytes) const;

  std::unordered_map<std::uint64_t, std::unique_ptr<Shared>> m_shared;  // by creation number
  std::map<NDrawItem::Path, std::unique_ptr<Thrown>> m_thrown;
  std::size_t m_meshUploadCount = 0;
  std::size_t m_coordsUploadCount = 0;
};

}  // namespace corvanta::renderer
