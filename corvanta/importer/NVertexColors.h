#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "corvanta/export.h"
#include "corvanta/importer/mesh.h"
#include "corvanta/importer/neutral/NSceneView.h"

namespace corvanta::importer {

/// The colours of a model's vertices as a picture, since materials have no other colour that
/// varies. Each triangle has a few pixels of its own, between which the colours run as they do over
/// the triangle; those of one colour share theirs.
class CORVANTA_API NVertexColors {
 public:
  /// Meshes whose colours are all white have none here.
  /// Cost: linear in the triangles with colours.
  explicit NVertexColors(neutral::NSceneView const& scene);

  /// Whether the scene's mesh of that number has colours that the picture shows.
  bool Has(std::size_t mesh) const { return m_firsts[mesh] != kNone; }
  /// The u and v of a corner of such a mesh; corner 3 i + k belongs to triangle i.
  std::array<float, 2> GetCoords(std::size_t mesh, std::size_t corner) const;
  /// The same as a function; none for a mesh without colours. Good as long as this is.
  NCornerColors GetCornerColors(std::size_t mesh) const;
  /// The picture as the bytes of a TGA file; none without colours.
  std::vector<unsigned char> MakePicture() const;

  /// What isn't shown, in UTF-8.
  std::vector<std::string> GetNotes() const;

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  using Cell = std::array<neutral::NTexel, 3>;

  bool AddMesh(neutral::NMesh const& mesh);
  std::size_t GetHeight() const;
  std::size_t GetLength() const { return m_side - 2 * m_border - 1; }  // of a triangle's side

  neutral::NSceneView const& m_scene;
  std::vector<std::size_t> m_firsts;  // of each mesh, the place of its first triangle in m_numbers
  std::vector<std::uint32_t> m_numbers;  // of the cells of the triangles
  std::vector<Cell> m_cells;
  std::unordered_map<std::uint32_t, std::uint32_t> m_flats;  // cells of one colour, by it
  std::size_t m_side = 2, m_border = 0;  // pixels of a cell, and of what of it is no triangle's
  std::size_t m_columns = 1;
  std::size_t m_leftOutCount = 0;
};

}  // namespace corvanta::importer
