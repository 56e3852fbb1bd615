#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "corvanta/core/reference_countable/NReferenceCountable.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/domain/geometry/NGeometryChangeType.h"
#include "corvanta/data/domain/material/texture_mapping/NUVWMappingID.h"
#include "corvanta/data/structs/UVW.h"
#include "corvanta/data/structs/XYZ.h"
#include "corvanta/export.h"

namespace corvanta::data::events::detail {
class NModelRecorder;
}

namespace corvanta::data::domain::geometry {

/// Vertex and index arrays of a piece of a shape, assigned as a whole and never in parts.
///
/// Nothing is derived from them here: no normals, boxes or tangents. A surface may be in several
/// geometry nodes at once; it keeps none of them alive. Hold it by `boost::intrusive_ptr`.
class CORVANTA_API NSurface : public core::reference_countable::NReferenceCountable {
 public:
  using UVWs = std::vector<structs::UVW>;
  using UVWsMap = std::map<material::texture_mapping::NUVWMappingID, UVWs>;

  NSurface(NSurface const&) = delete;
  NSurface& operator=(NSurface const&) = delete;
  ~NSurface() override;

  std::vector<structs::XYZ> const& GetCoords() const noexcept;
  /// As many as coordinates.
  std::vector<structs::XYZ> const& GetNormals() const noexcept;
  /// Units: a triangle list, three indices a triangle. A triangle with an index outside the
  /// coordinates counts as absent, and so does a last run of one or two.
  std::vector<unsigned int> const& GetIndices() const noexcept;
  /// The texture coordinates under `id`, one a vertex. The pointer is good until the next Assign.
  /// Fails: null if there is no set under `id`.
  UVWs const* GetUVWs(material::texture_mapping::NUVWMappingID id) const noexcept;
  UVWsMap const& GetUVWsMap() const noexcept;

  /// Replaces all arrays. A UVW set that hasn't one element a vertex is ignored.
  /// Units: three floats a vertex in `coords` and `normals`. Indices are taken as they are.
  /// Raises: NGCT_SURFACE_CHANGED on every geometry node that holds this surface.
  /// Fails: false, and no change, if the floats don't make as many normals as coordinates.
  bool Assign(std::vector<float> const& coords, std::vector<float> const& normals,
              std::vector<unsigned int> const& indices, UVWsMap const& uvws);
  /// Replaces all arrays, with one UVW set, under NUVWID_FLAT, whose w are 0. Returns true.
  /// Units: `3 * vertexCount` floats in `coords` and `normals`, `2 * vertexCount` in `uvs`. An
  /// index beyond 32 bits becomes 0xFFFFFFFF.
  /// Raises: NGCT_SURFACE_CHANGED on every geometry node that holds this surface.
  bool Assign(float const* coords, float const* normals, unsigned long vertexCount,
              unsigned long const* indices, unsigned long indexCount, float const* uvs);

  /// A new surface of the same class with the same contents, in no geometry node.
  virtual boost::intrusive_ptr<NSurface> CloneSurface() const = 0;

  /// Grows with every surface that the process makes; the order of surfaces in sets and maps.
  std::uint64_t GetCreationNumber() const noexcept { return m_creationNumber; }

 protected:
  NSurface();

  /// Gives `target` the arrays, silently; its owners stay.
  void CopyTo(NSurface& target) const;

 private:
  friend class NGeometryNode;
  struct Arrays;
  struct Block;

  void Replace(std::shared_ptr<Arrays const> made);
  void Record(events::detail::NModelRecorder& recorder,
              std::shared_ptr<Arrays const> const& previous);
  static void ApplyArrays(core::reference_countable::NReferenceCountable& surface,
                          std::shared_ptr<void const> const& arrays);
  bool AddOwnerNode(NGeometryNode const& node);
  bool RemoveOwnerNode(NGeometryNode const& node);

  std::uint64_t const m_creationNumber;
  std::unique_ptr<Block> const m_block;
};

/// Orders surfaces by creation, null first, so that two runs of one program sort alike.
inline bool operator<(boost::intrusive_ptr<NSurface> const& a,
                      boost::intrusive_ptr<NSurface> const& b) noexcept {
  return b && (!a || a->GetCreationNumber() < b->GetCreationNumber());
}

}  // namespace corvanta::data::domain::geometry
