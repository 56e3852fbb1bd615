#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "corvanta/importer/neutral/scene.h"

namespace corvanta::importer {

/// The normals of a mesh's corners, each of length 1: the mesh's own where they can be used, others
/// worked out from the triangles.
class NCornerNormals {
 public:
  using Triples = std::span<neutral::NTriple const>;
  using Triangles = std::span<neutral::NTriangle const>;

  /// Own normals can't be used that have no length or aren't finite; nor those of a face to which
  /// none of them is near, or which they all see from behind, unless most faces of the mesh are
  /// turned over in that way.
  ///
  /// Others are the mean of those faces in the same place that can be reached over edges without a
  /// crease, weighted by their areas; (0, 0, 1) where they cancel out. Texture coordinates make no
  /// crease. At `crease` 0 all faces are flat.
  /// Units: `crease` in degrees.
  /// Requires: the spans stay; `normals` is empty or as long as `positions`.
  /// Cost: n log n in the triangles where normals are worked out, otherwise linear.
  NCornerNormals(Triples positions, Triples normals, Triangles triangles, double crease);

  /// Whether the normal of that corner is its vertex's own; corner 3 i + k belongs to triangle i.
  bool IsOwn(std::size_t corner) const {
    return !m_own.empty() && !m_isContradicted[corner / 3] && m_own[GetVertex(corner)] != kNone;
  }
  neutral::NTriple const& Get(std::size_t corner) const {
    return IsOwn(corner) ? m_own[GetVertex(corner)] : m_made[corner];
  }
  /// No more corners than this differ in position and normal together.
  std::size_t GetMostDistinct() const;

 private:
  static constexpr neutral::NTriple kNone{};

  std::size_t GetVertex(std::size_t corner) const { return m_triangles[corner / 3][corner % 3]; }
  void ReadOwn(Triples normals);
  void JudgeFaces();
  bool AreAllOwn() const;
  void Make(double crease);

  Triples const m_positions;
  Triangles const m_triangles;
  std::vector<neutral::NTriple> m_own;   // by vertices; kNone for one that points nowhere
  std::vector<bool> m_isContradicted;    // by triangles
  std::vector<neutral::NTriple> m_made;  // by corners; empty where none is needed
};

}  // namespace corvanta::importer
