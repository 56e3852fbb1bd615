#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/export.h"
#include "corvanta/importer/neutral/NSceneView.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::importer {

/// A mesh at rest, with all that can move it: what the models of a mesh share.
class CORVANTA_API NShape {
 public:
  /// `surface` is that of `mesh`, `vertices` are the mesh's vertices by those of the surface, and
  /// `isFaceted` is what IsFaceted says.
  NShape(neutral::NSceneView const& scene, neutral::NMesh const& mesh,
         data::domain::geometry::NSurface const& surface,
         std::vector<std::uint32_t> const& vertices, bool isFaceted);

  std::size_t GetVertexCount() const { return m_coords.size(); }
  std::size_t GetTargetCount() const { return m_targets.size(); }
  /// Whether there are vertices whose weights don't make 1.
  bool IsUneven() const { return m_isUneven; }
  /// One more than the largest joint that has a vertex.
  std::size_t GetJointCount() const { return m_jointCount; }

  struct Arrays {
    std::vector<float> coords, normals;  // three a vertex of the surface
  };
  /// The shape where the joints take the frame of the mesh by `joints` and the targets have
  /// `weights`. The weights of a vertex are made one; where all that have it are gone, it stays.
  /// Those are gone that `joints` has no entry for, or one that is 0 altogether.
  ///
  /// Normals turn with their vertices; those of a mesh without own ones are worked out again.
  /// Cost: linear in vertices, influences and offsets.
  Arrays Evaluate(std::span<VX_Math::Matrix const> joints, std::span<float const> weights) const;

 private:
  using XYZ = data::structs::XYZ;

  struct Influence {
    std::uint32_t joint;
    float weight;
  };
  // What targets add to the mesh's vertices; empty for nothing.
  struct Added {
    std::vector<XYZ> positions, normals;
  };

  void ReadInfluences(neutral::NSceneView const& scene, neutral::NMesh const& mesh);
  void ReadTargets(neutral::NSceneView const& scene, neutral::NMesh const& mesh);
  void FindGroups(bool isFaceted);
  Added Morph(std::span<float const> weights) const;
  VX_Math::Matrix Blend(std::size_t vertex, std::span<VX_Math::Matrix const> joints) const;
  void WorkOutNormals(Arrays& arrays, std::vector<bool> const& isMirrored) const;

  std::vector<XYZ> m_coords, m_normals;        // by the surface's vertices
  std::vector<std::uint32_t> m_placeStarts;    // of a mesh's vertex, where its places begin, and
  std::vector<std::uint32_t> m_places;         // the surface's vertices that are it
  std::vector<std::size_t> m_influenceStarts;  // of a mesh's vertex; empty without a skin
  std::vector<Influence> m_influences;
  std::vector<std::vector<neutral::NOffset>> m_targets;
  // Vertices of the surface with one normal for all, where normals are worked out again.
  std::vector<std::uint32_t> m_groups;
  std::size_t m_groupCount = 0;
  std::vector<unsigned> m_indices;  // for that
  std::size_t m_jointCount = 0;
  bool m_isUneven = false;
};

}  // namespace corvanta::importer
